# Installs the build into a new directory and builds and runs a small program against it, once
# through the CMake package and once through pkg-config.
# Given: BUILD_DIR, SOURCE_DIR (of the program), WORK_DIR, LIBDIR, CXX, CXX_FLAGS (a list)

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\nended with ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(run_consumer program)
    run(${program})
    if(NOT output STREQUAL "I32 -1500 same")
        message(FATAL_ERROR "${program} wrote: ${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
set(prefix "${WORK_DIR}/installed")
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# The tree is moved before it is used: nothing in it may point to where it was.
file(RENAME ${prefix} ${WORK_DIR}/moved)
set(prefix "${WORK_DIR}/moved")

string(JOIN " " flags ${CXX_FLAGS})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake)
run_consumer(${WORK_DIR}/cmake/consumer)

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
run(pkg-config --modversion k7eCore)
if(NOT output STREQUAL "1.60")
    message(FATAL_ERROR "pkg-config names version ${output}")
endif()
run(pkg-config --cflags --libs k7eCore)
separate_arguments(package_flags UNIX_COMMAND "${output}")
run(${CXX} ${CXX_FLAGS} -std=c++17 -fPIC ${SOURCE_DIR}/main.cpp -o ${WORK_DIR}/by_pkg_config
    ${package_flags} -Wl,-rpath,${prefix}/${LIBDIR})
run_consumer(${WORK_DIR}/by_pkg_config)

file(REMOVE_RECURSE ${WORK_DIR})
