#include "shell/FormColorSettings.h"

#include "desktop/BoxColors.h"
#include "desktop/EnterKey.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "shell/Icons.h"

#include <QBoxLayout>
#include <QColorDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

namespace quorvik
{

namespace
{

std::optional<QColor> ShowColorDialog(const QColor &present, QWidget *owner)
{
    const QColor chosen = QColorDialog::getColor(present, owner);
    return chosen.isValid() ? std::optional(chosen) : std::nullopt;
}

/** The picture of the buttons that change a colour, in the colour of their text. */
QIcon BrushIcon(const QWidget *widget)
{
    QPixmap picture = IconOf(QStringLiteral("brush")).pixmap(64);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), widget->palette().color(QPalette::ButtonText));
    return QIcon(picture);
}

} // namespace

/** A box of one colour. */
class FormColorSettings::Swatch : public QFrame
{
public:
    Swatch(QWidget *parent, const QString &name)
        : QFrame(parent)
    {
        setObjectName(name);
        setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
        setAutoFillBackground(true);
        setMinimumSize(fontMetrics().averageCharWidth() * 12, fontMetrics().height() * 3 / 2);
    }

    QColor Color() const { return palette().color(QPalette::Window); }

    void SetColor(const QColor &color)
    {
        QPalette coloured = palette();
        coloured.setColor(QPalette::Window, color);
        setPalette(coloured);
        setAccessibleDescription(color.name());
    }
};

FormColorSettings::FormColorSettings(Desk &desk)
    : Form(desk, QStringLiteral("FormColorSettings"), QStringLiteral("Color Settings"),
           QStringLiteral("Color Settings.htm"))
    , ShowColor(ShowColorDialog)
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeSlots());
    layout->addStretch();
    layout->addSpacing(fontMetrics().height());
    layout->addWidget(MakeCommands());
    for (int index = 0; index < SlotCount; ++index)
        shape1_[std::size_t(index)]->SetColor(ColorOf(desk.colors.Colors[std::size_t(index)]));
    commandApply_->setEnabled(false);
    MakeEnterPressButtons(this);
}

FormColorSettings::~FormColorSettings() = default;

QWidget *FormColorSettings::MakeSlots()
{
    static const QString captions[SlotCount] = {
        QStringLiteral("Read/Write Parameters"), QStringLiteral("ICR-Read/Write Parameters"),
        QStringLiteral("ICR-Read Only Parameters"), QStringLiteral("Read Only Parameters"),
        QStringLiteral("Linked Destination Parameters")};
    auto *rows = new QWidget(this);
    auto *grid = new QGridLayout(rows);
    grid->setContentsMargins({});
    grid->setColumnStretch(0, 1);
    grid->setHorizontalSpacing(fontMetrics().height());
    for (int index = 0; index < SlotCount; ++index) {
        auto *label = new QLabel(captions[index], rows);
        label->setObjectName(ControlName("LabelTypes", index));
        auto *swatch = new Swatch(rows, ControlName("Shape1", index));
        swatch->setAccessibleName(captions[index]);
        auto *image = new QToolButton(rows);
        image->setObjectName(ControlName("Image1", index));
        image->setIcon(BrushIcon(image));
        image->setAccessibleName(QStringLiteral("Change the colour of ") + captions[index]);
        image->setToolTip(QStringLiteral("Change this colour"));
        On(image, &QToolButton::clicked, this, [this, index] { Image1_Click(index); });
        grid->addWidget(label, index, 0);
        grid->addWidget(swatch, index, 1);
        grid->addWidget(image, index, 2);
        shape1_[std::size_t(index)] = swatch;
    }
    return rows;
}

QWidget *FormColorSettings::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    layout->addStretch();
    const auto addButton = [&](const QString &name, const QString &caption, const QString &toolTip,
                               const std::function<void()> &handler) {
        auto *button = new QPushButton(caption, commands);
        button->setObjectName(name);
        button->setToolTip(toolTip);
        On(button, &QPushButton::clicked, this, handler);
        layout->addWidget(button);
        return button;
    };
    addButton(QStringLiteral("CommandOK"), QStringLiteral("OK"),
              QStringLiteral("Apply Current Colors and Close"),
              [this] {
                  CommandApply_Click();
                  close();
              })
        ->setDefault(true);
    addButton(QStringLiteral("CommandCancel"), QStringLiteral("Cancel"),
              QStringLiteral("Cancel Current Colors"), [this] { close(); });
    commandApply_ = addButton(QStringLiteral("CommandApply"), QStringLiteral("&Apply"),
                              QStringLiteral("Apply Current Colors"), [this] { CommandApply_Click(); });
    addButton(QStringLiteral("CommandDefault"), QStringLiteral("&Default"),
              QStringLiteral("Set Colors to Default"), [this] { CommandDefault_Click(); });
    layout->addWidget(MakeCommandHelp());
    return commands;
}

void FormColorSettings::Image1_Click(int index)
{
    Swatch *swatch = shape1_.at(std::size_t(index));
    const std::optional<QColor> chosen = ShowColor(swatch->Color(), this);
    if (!chosen)
        return;
    swatch->SetColor(*chosen);
    commandApply_->setEnabled(true);
}

void FormColorSettings::CommandApply_Click()
{
    AccessColors &colors = desk().colors;
    for (std::size_t index = 0; index < SlotCount; ++index)
        colors.Colors[index] = BlueGreenRed(shape1_[index]->Color());
    // The colour of empty boxes has no swatch; the defaults are the only way to it.
    if (isDefaultChosen_)
        colors.Colors[Access::Empty] = colors.DefaultColors[Access::Empty];
    commandApply_->setEnabled(false);
}

void FormColorSettings::CommandDefault_Click()
{
    for (std::size_t index = 0; index < SlotCount; ++index)
        shape1_[index]->SetColor(ColorOf(desk().colors.DefaultColors[index]));
    isDefaultChosen_ = true;
    commandApply_->setEnabled(true);
}

} // namespace quorvik
