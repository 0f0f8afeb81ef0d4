#pragma once

#include "desktop/Form.h"
#include "model/TextTables.h"
#include "platform/Guard.h"

#include <QPointer>
#include <array>
#include <cstdint>
#include <optional>

class QBoxLayout;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace quorvik
{

class FactsHead;
class InlineMessage;

/** The one place where a user types or picks a parameter's value. It opens beside the value box that has the
 * focus. */
class FormModifyParameterValue : public DialogForm
{
    Q_OBJECT

public:
    /** Edits parameter p, starting from a raw value. */
    FormModifyParameterValue(Desk &desk, QWidget *owner, int p, std::int32_t rawValue);

    /** The raw value behind OK; nothing however else it was closed. */
    std::optional<std::int32_t> EditedValue() const;

    /** The present choice as text: the number typed, the option's index, or the number of the parameter. */
    const QString &NewValue() const { return newValue_; }

    void done(int result) override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void MakeControls();
    QPushButton *MakeButton(const char *name, const QString &caption);
    void Load();
    void LayOutCombo(QGridLayout *layout);
    void LayOutOptions(QGridLayout *layout, int count);
    void LayOutNumber(QGridLayout *layout);
    QBoxLayout *LayOutButtons();
    void ResizeTo(int widthTwips, int heightTwips);
    void Grow();
    void PlaceBesideBox();
    void TimerUpdateScreen_Timer();
    void ShowLimits();
    void EnableButtons();
    bool CanFill(std::int32_t rawValue) const;
    void Fill(std::int32_t rawValue);
    bool Step(int key);
    void TellRefusal(const QString &refusal);
    void EntryChanged(const QString &newValue);
    void AskAgain();
    void CommandOK_Click();
    bool IsAcceptable();

    std::array<QLabel *, 3> labelValue_{};
    std::array<QLineEdit *, 3> textValue_{};
    std::array<QLabel *, 3> labelUnits_{};
    std::array<QRadioButton *, 4> option1_{};
    QComboBox *comboParameterSelect_ = nullptr;
    QPushButton *commandOK_ = nullptr;
    QPushButton *commandCancel_ = nullptr;
    QPushButton *commandFactory_ = nullptr;
    QPushButton *commandFile_ = nullptr;
    FactsHead *head_;
    InlineMessage *message_;
    TickGuard tickGuard_;
    QPointer<QWidget> box_;                          ///< the value box that is edited; null for none
    ValueType::Form form_ = ValueType::Form::Number; ///< what it was shaped for
    QString newValue_;
    int param_;
    std::int32_t rawValue_;
};

} // namespace quorvik
