#pragma once

#include "desktop/Form.h"

#include <array>
#include <cstdint>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace quorvik
{

class FormVirtualOperator;

/** "Visual Operator Setup": binds one virtual input to a parameter and sets its two end values. */
class FormVirtualOperatorSetup : public DialogForm
{
    Q_OBJECT

public:
    /** @param selection the record to open on, 0 to 11. */
    FormVirtualOperatorSetup(Desk &desk, FormVirtualOperator &panel, int selection);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using EndValues = std::array<std::int32_t, 2>;

    void BuildControls();
    QWidget *MakeCommands();
    void ComboInput_Click();
    void ComboDestination_Click();
    void TextBiasGain_LostFocus(int index);
    void FillDestinationList(int current);
    bool ApplyVirtualInput();
    /** The end values as entered, or nothing where one was refused and told. */
    std::optional<EndValues> EnteredEnds(int destination);
    int FindVirtualConflict(int index, int destination) const;
    std::int32_t ClampToRange(std::int32_t value, int parameter) const;
    int Destination() const;
    std::int32_t AttributesOfDestination() const;
    bool HasListOfValues() const;

    FormVirtualOperator &panel_;
    QComboBox *comboInput_;
    QComboBox *comboDestination_;
    QPushButton *commandApply_ = nullptr;
    std::array<QLabel *, 2> labelBiasGain_{};
    std::array<QLineEdit *, 2> textBiasGain_{};
    std::array<QComboBox *, 2> comboBiasGain_{};
    std::array<QLabel *, 2> labelUnits_{};
};

} // namespace quorvik
