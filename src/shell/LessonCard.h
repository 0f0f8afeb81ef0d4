#pragma once

#include "shell/Lessons.h"

#include <QFrame>
#include <QTimer>
#include <vector>

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace quorvik
{

/** A lesson beside the windows: its steps, each ticked off when it was done. It holds nothing up. */
class LessonCard : public QFrame
{
    Q_OBJECT

public:
    /** @param main must outlive it. */
    LessonCard(MDIFormMain &main, QWidget *parent);

    /** Begins a lesson anew, in place of another one. */
    void Begin(const Lesson &lesson);
    /** How many steps are done. */
    int DoneCount() const { return done_; }

Q_SIGNALS:
    void Closed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Look();
    void ShowSteps();

    MDIFormMain &main_;
    const Lesson *lesson_ = nullptr;
    LessonMoment before_;
    QLabel *title_;
    QVBoxLayout *rows_;
    QLabel *end_;
    QToolButton *close_;
    std::vector<QLabel *> steps_;
    QTimer timerLook_;
    int done_ = 0;
};

} // namespace quorvik
