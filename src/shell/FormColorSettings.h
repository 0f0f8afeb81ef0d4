#pragma once

#include "desktop/Form.h"

#include <QColor>
#include <array>
#include <functional>
#include <optional>

class QPushButton;

namespace quorvik
{

/** "Color Settings": the colours that value boxes give parameters by access class. */
class FormColorSettings : public Form
{
    Q_OBJECT

public:
    explicit FormColorSettings(Desk &desk);
    ~FormColorSettings() override;

    /** Lets the user choose a colour; nothing stands for a cancel. The program shows the colour dialog. */
    std::function<std::optional<QColor>(const QColor &present, QWidget *owner)> ShowColor;

private:
    class Swatch;
    static constexpr int SlotCount = 5;

    QWidget *MakeSlots();
    QWidget *MakeCommands();
    void Image1_Click(int index);
    void CommandApply_Click();
    void CommandDefault_Click();

    std::array<Swatch *, SlotCount> shape1_{};
    QPushButton *commandApply_ = nullptr;
    bool isDefaultChosen_ = false;
};

} // namespace quorvik
