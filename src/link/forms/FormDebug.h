#pragma once

#include "desktop/Form.h"

#include <QTimer>
#include <array>

class QLineEdit;
class QPlainTextEdit;

namespace quorvik
{

class DriveLink;

/** Shows the link's inner state to a developer: the last properties reply, and who is polled. */
class FormDebug : public Form
{
    Q_OBJECT

public:
    FormDebug(Desk &desk, DriveLink &link);

private:
    void CommandReadProps_Click();
    void TimerUpdateScreen_Timer();

    DriveLink &link_;
    std::array<QLineEdit *, 5> text1_{};
    QLineEdit *text2_;
    QPlainTextEdit *textReadFlags_;
    QTimer timerUpdateScreen_;
};

} // namespace quorvik
