#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

namespace orvandel {

/// Threads that share loops. A team of one runs everything in the calling thread and has no others.
/// One loop at a time; the thread that calls takes part.
class WorkerTeam {
 public:
  WorkerTeam();
  ~WorkerTeam();
  WorkerTeam(WorkerTeam&&) noexcept;
  WorkerTeam& operator=(WorkerTeam&&) noexcept;

  /// Sets the number of workers, at least 1, the calling thread included. Where no more threads can be had, there
  /// are fewer.
  void Resize(std::size_t num_workers);
  std::size_t Size() const;

  /// Calls `body(i, worker)` for each i below `count`, in any order and at once; `worker` is below Size() and tells apart
  /// what runs at once. Returns when all are done. What a body throws is thrown again, once.
  template <typename Body>
  void Run(std::size_t count, Body&& body) {
    using Plain = std::remove_reference_t<Body>;
    RunLoop(
        count,
        [](void* b, std::size_t i, std::size_t worker) { (*static_cast<Plain*>(b))(i, worker); },
        const_cast<void*>(static_cast<const void*>(&body)));
  }

 private:
  struct Shared;
  using Call = void (*)(void* body, std::size_t i, std::size_t worker);
  void RunLoop(std::size_t count, Call call, void* body);

  std::unique_ptr<Shared> shared_;
};

}  // namespace orvandel
