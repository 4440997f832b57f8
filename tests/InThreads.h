#ifndef INTHREADS_H
#define INTHREADS_H

#include <QThread>

#include <atomic>
#include <memory>
#include <vector>

/*!
    Runs \a check in four threads at the same time, and returns whether it returned true in each.
*/
template <class Check>
bool trueInThreads(Check check)
{
    std::atomic<int> successes{0};
    std::vector<std::unique_ptr<QThread>> threads(4);
    for (auto &thread : threads)
        thread.reset(QThread::create([&] { successes += check() ? 1 : 0; }));
    for (auto &thread : threads)
        thread->start();
    for (auto &thread : threads)
        thread->wait();
    return successes == static_cast<int>(threads.size());
}

#endif // INTHREADS_H
