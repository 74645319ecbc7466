#include "platform/worker_team.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace orvandel {

struct WorkerTeam::Shared {
  std::mutex mutex;
  std::condition_variable has_work;
  std::condition_variable is_done;
  std::vector<std::thread> threads;

  // All below are guarded by the mutex.
  bool is_ending = false;
  Call call = nullptr;
  void* body = nullptr;
  std::size_t count = 0;
  std::size_t next = 0;      ///< iteration to be taken
  std::size_t num_open = 0;  ///< iterations not finished
  std::exception_ptr failure;

  /// Takes iterations as long as there are any. Holds the lock when called and when it returns.
  void Work(std::unique_lock<std::mutex>& lock, std::size_t worker) {
    while (next < count) {
      const std::size_t i = next++;
      lock.unlock();
      std::exception_ptr thrown;
      try {
        call(body, i, worker);
      } catch (...) {
        thrown = std::current_exception();
      }
      lock.lock();
      if (thrown && !failure) failure = thrown;
      if (--num_open == 0) is_done.notify_all();
    }
  }

  void Serve(std::size_t worker) {
    std::unique_lock lock(mutex);
    while (true) {
      has_work.wait(lock, [this] { return is_ending || next < count; });
      if (is_ending) return;
      Work(lock, worker);
    }
  }

  void End() {
    {
      const std::lock_guard lock(mutex);
      is_ending = true;
    }
    has_work.notify_all();
    for (std::thread& thread : threads)
      thread.join();
    threads.clear();
    is_ending = false;
  }
};

WorkerTeam::WorkerTeam() : shared_(std::make_unique<Shared>()) {}
WorkerTeam::WorkerTeam(WorkerTeam&&) noexcept = default;
WorkerTeam& WorkerTeam::operator=(WorkerTeam&& other) noexcept {
  std::swap(shared_, other.shared_);
  return *this;
}
WorkerTeam::~WorkerTeam() {
  if (shared_) shared_->End();
}

std::size_t WorkerTeam::Size() const {
  return shared_->threads.size() + 1;
}

void WorkerTeam::Resize(std::size_t num_workers) {
  const std::size_t wanted = std::max<std::size_t>(num_workers, 1);
  if (wanted == Size()) return;
  shared_->End();
  shared_->threads.reserve(wanted - 1);
  try {
    for (std::size_t worker = 1; worker < wanted; ++worker)
      shared_->threads.emplace_back([shared = shared_.get(), worker] { shared->Serve(worker); });
  } catch (const std::system_error&) {
    // The system has no more threads: those there are do the work.
  }
}

void WorkerTeam::RunLoop(std::size_t count, Call call, void* body) {
  if (Size() == 1) {
    for (std::size_t i = 0; i < count; ++i)
      call(body, i, 0);
    return;
  }
  std::unique_lock lock(shared_->mutex);
  shared_->call = call;
  shared_->body = body;
  shared_->count = count;
  shared_->next = 0;
  shared_->num_open = count;
  shared_->has_work.notify_all();
  shared_->Work(lock, 0);
  shared_->is_done.wait(lock, [this] { return shared_->num_open == 0; });
  const std::exception_ptr failure = std::exchange(shared_->failure, nullptr);
  lock.unlock();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace orvandel
