#pragma once
// Somebody who watches the programs that convert pictures.

#include <functional>

namespace desk {

/// For the time of a scope, in its thread: `isToStop` is asked several times a second while such a program runs, and
/// when it says yes, the program is killed together with all that it has started. Then the picture counts as one that
/// can't be converted, this once. A watched program has a process group of its own, so that a key pressed at the
/// terminal reaches this process alone. An empty function: nobody watches.
class ConversionWatch {
  public:
    explicit ConversionWatch(std::function<bool()> isToStop);
    ~ConversionWatch();
    ConversionWatch(const ConversionWatch&) = delete;
    ConversionWatch& operator=(const ConversionWatch&) = delete;

  private:
    const std::function<bool()> isToStop_;
    const std::function<bool()>* const former_;
};

}  // namespace desk
