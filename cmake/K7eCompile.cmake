set(CMAKE_CXX_EXTENSIONS OFF)

# How our own code is compiled: linked privately by every target of this project, never exported.
add_library(k7e_compile INTERFACE)
target_compile_options(k7e_compile INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast
    $<$<BOOL:${K7E_WERROR}>:-Werror>)
# Not 0x050F00: that would change the order in which Qt streams a QMap.
target_compile_definitions(k7e_compile INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x050E00)

if(K7E_SANITIZE)
    # float-divide-by-zero and float-cast-overflow are not part of "undefined" but are wanted here.
    set(K7E_SANITIZE_FLAGS -fsanitize=${K7E_SANITIZE} -fno-omit-frame-pointer)
    if(K7E_SANITIZE MATCHES "undefined")
        list(APPEND K7E_SANITIZE_FLAGS -fsanitize=float-cast-overflow -fno-sanitize-recover=all)
    endif()
    add_compile_options(${K7E_SANITIZE_FLAGS})
    add_link_options(${K7E_SANITIZE_FLAGS})
endif()
