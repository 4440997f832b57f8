#ifndef FAULTS_H
#define FAULTS_H

#include <climits>
#include <string>
#include <vector>

/*!
    Lets the file calls of a thread fail, on purpose and one by one.

    The library behind this header has the names of the C library's file functions and stands in
    front of it, so that the code under test, the framework included, calls it. A call is counted if
    it is made by the thread that called arm(), and names something below a path, be it by a path or
    by a descriptor; all other calls are passed on untouched.

    Apart from this, the environment variable K7E_LISTING_ORDER changes the order in which
    directories list for the whole program: "reversed", or a number that shuffles.
*/
namespace Faults {

//! What happens at the counted calls from the one numbered 'first' on, to 'count' of them. The
//! first call has the number 1; with 0 nothing happens, and the calls are only counted.
struct Plan
{
    int first = 0;
    int count = 1;
    //! What the calls fail with; 0: those that transfer bytes transfer half of them.
    int error = 0;
    //! Called instead, before the call, which then takes its course.
    void (*before)(void *context) = nullptr;
    void *context = nullptr;
};

constexpr int kForever = INT_MAX;

//! What the file system below the path can do. A plain one has no files without a name, no renaming
//! with conditions, and no copying of its own.
enum class Support { Full, Plain };

struct Call
{
    const char *name; //!< as in the documentation of the system: "open" for open64() too
    std::string path; //!< absolute
    bool isWritten;   //!< of a descriptor: it was opened for writing
};

//! Counts the calls of this thread that name something below \a path, and lets them fail by the
//! plan.
void arm(const std::string &path, const Plan &plan, Support support = Support::Full);
//! Ends that, and returns all calls that were counted.
std::vector<Call> disarm();

//! Lets the file \a path not be there, for all calls of all threads that name it so.
void hide(const std::string &path);

} // namespace Faults

#endif // FAULTS_H
