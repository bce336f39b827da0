// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

/// Does pieces of work on several threads, and uses their results one after the other, in order, on the thread of the
/// caller.
template <class Result>
class InOrder
{
public:
    using Work = std::function<Result(int index)>;
    using Use = std::function<void(Result &&)>;

    /// Returns when the last result has been used. Whatever `work` or `use` throws ends it once the pieces that have
    /// been begun are done. `tick` is called now and then meanwhile, on the thread of the caller.
    static void run(int count, int jobs, const Work &work, const Use &use, const std::function<void()> &tick)
    {
        InOrder all(count, jobs, work);
        for (int i = 0; i < count; ++i)
            use(all.result(i, tick));
    }

    InOrder(const InOrder &) = delete;
    InOrder &operator=(const InOrder &) = delete;

private:
    /// How far threads may be ahead of the result that is to be used next.
    static constexpr int resultsPerJob = 16;

    InOrder(int count, int jobs, const Work &work) : m_work(work), m_count(count), m_mostAhead(jobs * resultsPerJob)
    {
        for (int i = 0; i < std::min(count, jobs); ++i) {
            try {
                m_threads.emplace_back([this] { workOnAll(); });
            } catch (const std::system_error &) {
                if (m_threads.empty())
                    throw;
                return; // the others do its work
            }
        }
    }

    ~InOrder()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_next = m_count;
        }
        m_changed.notify_all();
        for (std::thread &thread : m_threads)
            thread.join();
    }

    struct Done
    {
        std::optional<Result> result; // none if it threw
        std::exception_ptr failure;
    };

    void workOnAll()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_next >= m_count || m_next < m_used + m_mostAhead; });
            if (m_next >= m_count)
                return;
            const int index = m_next++;
            lock.unlock();
            Done done = workOn(index);
            lock.lock();
            m_done.emplace(index, std::move(done));
            m_changed.notify_all();
        }
    }

    Done workOn(int index) const
    {
        Done done;
        try {
            done.result = m_work(index);
        } catch (...) {
            done.failure = std::current_exception();
        }
        return done;
    }

    Result result(int index, const std::function<void()> &tick)
    {
        constexpr auto tickTime = std::chrono::milliseconds(100);
        std::unique_lock lock(m_mutex);
        auto there = m_done.find(index);
        while (there == m_done.end()) {
            m_changed.wait_until(lock, std::chrono::system_clock::now() + tickTime);
            there = m_done.find(index);
            lock.unlock();
            tick();
            lock.lock();
        }
        Done done = std::move(there->second);
        m_done.erase(there);
        m_used = index + 1;
        m_changed.notify_all();
        if (done.failure)
            std::rethrow_exception(done.failure);
        return std::move(*done.result);
    }

    const Work &m_work;
    const int m_count;
    const int m_mostAhead;

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::map<int, Done> m_done; // but not used yet
    int m_next = 0; // to be worked on
    int m_used = 0;

    std::vector<std::thread> m_threads; // last, since they use the rest
};
