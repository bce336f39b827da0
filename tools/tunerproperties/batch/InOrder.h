// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

/// Runs tasks on several threads, and uses their results in order on the thread of the caller. With a function for the
/// size of a result in bytes, the size of waiting results is limited as well.
template <class Result>
class InOrder
{
public:
    using Work = std::function<Result(int index)>;
    using Use = std::function<void(Result &&)>;
    using Size = std::int64_t (*)(const Result &);

    /// Returns when the last result has been used. An exception of `work` or `use` ends the run as soon as the tasks in
    /// progress are done. `tick` is called regularly, on the thread of the caller. Where no thread can be started, that
    /// of the caller works.
    static void run(int count, int jobs, const Work &work, const Use &use, const std::function<void()> &tick,
                    Size size = nullptr)
    {
        InOrder all(count, jobs, work, size);
        for (int i = 0; i < count; ++i)
            use(all.result(i, tick));
    }

    InOrder(const InOrder &) = delete;
    InOrder &operator=(const InOrder &) = delete;

private:
    /// How far threads may be ahead of the result that is used next.
    static constexpr int resultsPerJob = 16;
    /// No further task starts while results of so many bytes wait to be used.
    static constexpr std::int64_t mostBytesWaiting = 16 << 20;

    InOrder(int count, int jobs, const Work &work, Size size)
        : m_work(work), m_size(size), m_count(count), m_mostAhead(jobs * resultsPerJob),
          m_done(std::size_t(m_mostAhead))
    {
        const int wanted = std::min(count, jobs);
        m_threads.reserve(std::size_t(wanted));
        // What a thread that cannot be started would do, the others do, or the thread of the caller.
        try {
            for (int i = 0; i < wanted; ++i)
                m_threads.emplace_back([this] { workIfThereIsMemory(); });
        } catch (const std::system_error &) {
        } catch (const std::bad_alloc &) {
        }
        const std::lock_guard lock(m_mutex);
        m_working += int(m_threads.size());
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
        std::optional<Result> result; // empty after an exception
        std::exception_ptr failure;
    };

    std::int64_t sizeOf(const Done &done) const { return done.result && m_size ? m_size(*done.result) : 0; }

    /// The allocator may have nothing for another thread although the others have memory.
    void workIfThereIsMemory()
    {
        if (void *const some = ::operator new(1, std::nothrow)) {
            ::operator delete(some);
            workOnAll();
            return;
        }
        const std::lock_guard lock(m_mutex);
        --m_working;
        m_changed.notify_all();
    }

    void workOnAll()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_next >= m_count || mayBegin(); });
            if (m_next >= m_count)
                return;
            const int index = m_next++;
            lock.unlock();
            Done done = workOn(index);
            lock.lock();
            m_bytesWaiting += sizeOf(done);
            slot(index) = std::move(done);
            m_changed.notify_all();
        }
    }

    /// The task whose result is used next always starts, however many results wait after it.
    bool mayBegin() const
    {
        return m_next == m_used || (m_next < m_used + m_mostAhead && m_bytesWaiting < mostBytesWaiting);
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

    /// No task that has begun is farther ahead of the result that is used next than there are slots.
    std::optional<Done> &slot(int index) { return m_done[std::size_t(index % m_mostAhead)]; }

    Result result(int index, const std::function<void()> &tick)
    {
        constexpr auto tickTime = std::chrono::milliseconds(100);
        std::unique_lock lock(m_mutex);
        std::optional<Done> &there = slot(index);
        while (!there) {
            if (m_working == 0) {
                lock.unlock();
                return m_work(index);
            }
            m_changed.wait_until(lock, std::chrono::system_clock::now() + tickTime);
            lock.unlock();
            tick();
            lock.lock();
        }
        Done done = std::move(*there);
        there.reset();
        m_bytesWaiting -= sizeOf(done);
        m_used = index + 1;
        m_changed.notify_all();
        if (done.failure)
            std::rethrow_exception(done.failure);
        return std::move(*done.result);
    }

    const Work &m_work;
    const Size m_size;
    const int m_count;
    const int m_mostAhead;

    std::mutex m_mutex; // guards the following members
    std::condition_variable m_changed;
    // Results that are not used yet. Allocated before the threads start: when memory runs out, a thread may be unable
    // to allocate even what reports it.
    std::vector<std::optional<Done>> m_done;
    std::int64_t m_bytesWaiting = 0; // in m_done
    int m_next = 0; // index of the next task
    int m_used = 0;
    int m_working = 0; // the number of threads that work; none begins a task after it is 0

    std::vector<std::thread> m_threads; // last, since they use the rest
};
