#pragma once

#include <cstdint>
#include <span>

namespace quorvik
{

class MDIFormMain;

/** What a lesson compares with how it was when a step began. */
struct LessonMoment {
    std::int32_t rawAccel = 0; ///< (226) Fwd Accel A
    int windowCount = 0;       ///< of the program, the main one included
};

/** One thing to do, and how to see that it was done. */
struct LessonStep {
    const char *text;
    bool (*isDone)(MDIFormMain &main, const LessonMoment &before);
};

/** A few steps in their order; each is waited for once those before it are done. */
struct Lesson {
    const char *title;
    std::span<const LessonStep> steps;
};

std::span<const Lesson> Lessons();

/** How it is now, before a step. */
LessonMoment MomentOf(MDIFormMain &main);

} // namespace quorvik
