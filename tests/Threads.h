// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// A barrier at which threads wait for each other, any number of times, so that they continue at the same time.
class Barrier
{
public:
    explicit Barrier(int threads) : m_threads(threads) { }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        const int round = m_round;
        if (++m_waiting == m_threads) {
            m_waiting = 0;
            ++m_round;
            m_everyoneIsThere.notify_all();
        } else {
            m_everyoneIsThere.wait(lock, [&] { return m_round != round; });
        }
    }

private:
    const int m_threads;
    std::mutex m_mutex;
    std::condition_variable m_everyoneIsThere;
    int m_waiting = 0;
    int m_round = 0;
};

/// Calls each of the functions in a thread of its own, starting all at the same time, and waits for their end.
template <class... Functions>
void atOnce(Functions &&...functions)
{
    Barrier start(int(sizeof...(functions)));
    std::vector<std::thread> threads;
    (threads.emplace_back([&] {
        start.wait();
        functions();
    }),
     ...);
    for (std::thread &thread : threads)
        thread.join();
}
