#pragma once

#include "model/ReadInterest.h"
#include "operations/StepTest.h"
#include "platform/Guard.h"

#include <QScrollArea>
#include <optional>

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;

namespace quorvik
{

class GainFields;
class TrendHost;
class TryTable;
struct Desk;

/**
 * Beside the plots: the gains of a loop, a step on its reference, and the figures of the last answers. A step
 * ends by Esc and when the page is left.
 */
class TuningPage : public QScrollArea
{
    Q_OBJECT

public:
    TuningPage(Desk &desk, TrendHost &host, QWidget *parent);
    ~TuningPage() override;

    QSize sizeHint() const override;

Q_SIGNALS:
    /** A try is to be laid over what is shown; its trigger is the step. */
    void OverlayWanted(quorvik::TrendDataPtr data, const QString &title);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *MakeStepFields(QWidget *parent);
    QWidget *MakeTries(QWidget *parent);
    TunedLoop Loop() const;
    void FollowLoop();
    void FollowSources();
    void FollowInterest();
    void ShowState();
    void Tick();
    void CommandStep_Click();
    void TakeUsualSize();

    Desk &desk_;
    StepTest &steps_;
    ReadInterest polled_;
    std::vector<int> sources_; ///< as the list shows them
    int sized_ = -1;           ///< the reference that the size is of
    QComboBox *comboLoop_;
    QLabel *labelSet_;
    GainFields *gains_;
    QComboBox *comboReference_ = nullptr;
    QDoubleSpinBox *spinSize_ = nullptr;
    QDoubleSpinBox *spinHold_ = nullptr;
    QPushButton *commandStep_ = nullptr;
    QPushButton *commandRestore_ = nullptr;
    QPushButton *commandRecordNext_ = nullptr;
    QPushButton *commandLeftover_ = nullptr;
    QPushButton *commandCopy_ = nullptr;
    QLabel *labelSource_ = nullptr;
    QLabel *labelState_ = nullptr;
    TryTable *tries_ = nullptr;
    QTimer tick_;
    TickGuard tickGuard_;
};

} // namespace quorvik
