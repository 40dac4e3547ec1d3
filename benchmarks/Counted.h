#pragma once

/// The work of a benchmark whose instructions are counted: benchmarks/counts. Each call of this function
/// counts, and what stands around it does not.
extern "C" [[gnu::noinline]] inline void vlCounted(void (*work)(void*), void* context) { work(context); }

namespace vlclientui::benchmarks {

template <class Work>
void counted(Work work) {
  vlCounted([](void* context) { (*static_cast<Work*>(context))(); }, &work);
}

}  // namespace vlclientui::benchmarks
