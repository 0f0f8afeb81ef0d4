#pragma once

#include "blocks/DeskCircuit.h"
#include "circuit/WhyNot.h"
#include "desktop/Form.h"
#include "model/ReadInterest.h"
#include "platform/Guard.h"

class QLabel;
class QPushButton;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace quorvik
{

/** "Why Does It Not Run?": what must hold until the motor turns, in the order of the signal, and what of it
 * does not. */
class FormWhyNot : public Form
{
    Q_OBJECT

public:
    explicit FormWhyNot(Desk &desk);

    static QString Caption() { return QStringLiteral("Why Does It Not Run?"); }
    QSize sizeHint() const override;

protected:
    void Unload() override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *MakeCommands();
    void MakeList();
    void TimerUpdateScreen_Timer();
    bool IsKnown(int p) const;
    /** What the values are, and what follows from that. */
    QString OriginText() const;
    void ShowConditions();
    /** Keeps the user's row, or the first cause where the user has chosen none. @param chosen parameter of
     * the row before, -1 for none. */
    void Choose(int chosen);
    void ShowCondition(QTreeWidgetItem &item, const Condition &condition, bool isFirst) const;
    void EnableCommands();
    int ChosenParam() const; ///< of the current row, -1 for none
    void GoTo(int p);

    WhyNot why_;
    DeskCircuit circuit_;
    ReadInterest watched_; ///< what the explanation hangs on
    int followed_ = -1;    ///< parameter of the row that was chosen for the user, -1 before there was one
    QLabel *labelOrigin_;
    QLabel *labelHeadline_;
    QTreeWidget *listConditions_;
    QPushButton *commandFirst_ = nullptr;
    QPushButton *commandGoTo_ = nullptr;
    QPushButton *commandMap_ = nullptr;
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
};

/** Shows the one window as a child of the frame, made first where there is none. */
void OpenWhyNot(Desk &desk);

} // namespace quorvik
