#include "link/forms/FormDebug.h"

#include "link/DriveLink.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace quorvik
{

namespace
{

constexpr int UpdateIntervalMs = 1000;
const char *const FieldCaptions[] = {"Min", "Max", "Attrib", "Preset", "Value"};

} // namespace

FormDebug::FormDebug(Desk &desk, DriveLink &link)
    : Form(desk, QStringLiteral("FormDebug"), QStringLiteral("Debug"), QString())
    , link_(link)
    , text2_(new QLineEdit(QStringLiteral("1"), this))
    , textReadFlags_(new QPlainTextEdit(this))
{
    auto *layout = new QGridLayout(this);
    for (int i = 0; i < int(text1_.size()); ++i) {
        auto *label = new QLabel(QLatin1String(FieldCaptions[i]), this);
        label->setObjectName(ControlName("Label1", i));
        auto *text = new QLineEdit(this);
        text->setObjectName(ControlName("Text1", i));
        text->setAccessibleName(label->text());
        text->setReadOnly(true);
        layout->addWidget(label, i, 0);
        layout->addWidget(text, i, 1);
        text1_[std::size_t(i)] = text;
    }

    text2_->setObjectName(QStringLiteral("Text2"));
    text2_->setAccessibleName(QStringLiteral("Parameter number"));
    auto *commandReadProps = new QPushButton(QStringLiteral("ReadProps"), this);
    commandReadProps->setObjectName(QStringLiteral("CommandReadProps"));
    auto *label2 = new QLabel(QStringLiteral("ReadFlags"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    textReadFlags_->setObjectName(QStringLiteral("TextReadFlags"));
    textReadFlags_->setAccessibleName(label2->text());
    textReadFlags_->setReadOnly(true);
    textReadFlags_->setTabChangesFocus(true);

    const int below = int(text1_.size());
    layout->addWidget(text2_, below, 0);
    layout->addWidget(commandReadProps, below, 1);
    layout->setRowStretch(below + 1, 1);
    layout->addWidget(label2, 0, 2);
    layout->addWidget(textReadFlags_, 1, 2, below + 1, 1);
    layout->addWidget(MakeCommandClose(), below + 2, 2, Qt::AlignRight);

    On(commandReadProps, &QPushButton::clicked, this, [this] { CommandReadProps_Click(); });
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_.start(UpdateIntervalMs);
}

void FormDebug::CommandReadProps_Click()
{
    link_.ReadPropsIndex = ToInt16(CLng(text2_->text()));
}

void FormDebug::TimerUpdateScreen_Timer()
{
    const std::int32_t values[] = {link_.PropMin, link_.PropMax, link_.PropAttrib, link_.PropPreset,
                                   link_.PropValue};
    for (std::size_t i = 0; i < text1_.size(); ++i)
        text1_[i]->setText(QString::number(values[i]));

    const ParameterTable &table = desk().table;
    QString flags;
    for (int i = 0; i <= table.FileLastParam; ++i)
        if (table[i].ReadFlag != 0)
            flags += QStringLiteral("%1 %2\n").arg(i).arg(table[i].ReadFlag);
    // Only on a change, or the user's place in the list would be lost every second.
    if (flags != textReadFlags_->toPlainText())
        textReadFlags_->setPlainText(flags);
}

} // namespace quorvik
