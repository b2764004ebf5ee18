#pragma once

#include <chrono>
#include <cstdint>
#include <random>

#include "practice/practice_pilot.h"

namespace corvenna {

/// What a bad pilot does besides flying: every now and then, by chance, one of the misdeeds. The same seed
/// gives the same misdeeds. One thread.
class Unruliness {
  public:
    enum class Misdeed {
        WrongDigit,     ///< types a digit that no menu has, or that means something else
        Nonsense,       ///< chats about something else
        CloseServices,  ///< wherever he is
        TakeOffUncleared,
        Silence,    ///< his simulator stands still: nothing is answered, no position told
        Jump,       ///< is somewhere else for a moment
        Vanish,     ///< leaves in mid-flight, and another one comes
        Reconnect,  ///< leaves in mid-flight, and comes again under the same name
    };
    static constexpr int Misdeeds = 8;

    /// From one misdeed to the next: at least so long, and at most twice that.
    static constexpr std::chrono::milliseconds Interval{60000};
    static constexpr std::chrono::milliseconds SilenceTime{90000};
    static constexpr std::chrono::milliseconds JumpTime{5000};

    /// Whether the pilot of that number is a bad one, when there are any.
    static bool IsOf(int number) { return number % 3 == 2; }

    explicit Unruliness(std::uint32_t seed) : chance_(seed) {}

    /// Does what is to be done by this time.
    void Step(PracticePilot& pilot, std::chrono::milliseconds now);

    void Commit(Misdeed misdeed, PracticePilot& pilot, std::chrono::milliseconds now);

    /// Whether his simulator stands still.
    bool Freezes(std::chrono::milliseconds now) const { return now < frozenUntil_; }

    /// Of one who has left: whether he comes again.
    bool Returns() const { return returns_; }

  private:
    std::mt19937 chance_;
    std::chrono::milliseconds due_{0};
    std::chrono::milliseconds frozenUntil_{0};
    std::chrono::milliseconds jumpEnds_{0};
    bool returns_ = false;
};

}  // namespace corvenna
