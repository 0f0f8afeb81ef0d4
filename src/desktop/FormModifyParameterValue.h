#pragma once

#include "desktop/Form.h"

#include <array>
#include <cstdint>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace quorvik
{

/** The one place where a user types or picks a parameter's value. */
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

private:
    void MakeControls();
    void Load();
    void LayOutCombo();
    void LayOutOptions(int count);
    void LayOutNumber();
    void ResizeTo(int widthTwips, int heightTwips);
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
    QString newValue_;
    int param_;
    std::int32_t rawValue_;
};

} // namespace quorvik
