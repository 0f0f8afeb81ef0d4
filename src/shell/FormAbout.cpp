#include "shell/FormAbout.h"

#include "platform/Asker.h"
#include "platform/Guard.h"
#include "shell/Icons.h"
#include "shell/SystemInformation.h"

#include <QBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

namespace quorvik
{

FormAbout::FormAbout(Desk &desk, QWidget *owner)
    : DialogForm(desk, owner, QStringLiteral("FormAbout"), QStringLiteral("About ") + AppTitle(),
                 QStringLiteral("Getting Started.htm"))
{
    const auto makeLabel = [this](const QString &name, const QString &text) {
        auto *label = new QLabel(text, this);
        label->setObjectName(name);
        label->setTextFormat(Qt::PlainText);
        return label;
    };
    auto *icon = makeLabel(QStringLiteral("picIcon"), QString());
    const int side = fontMetrics().height() * 4;
    icon->setPixmap(IconOf(QStringLiteral("quorvik")).pixmap(side, side));
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    auto *title = makeLabel(QStringLiteral("lblTitle"), AppTitle());
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    title->setFont(large);
    auto *version =
        makeLabel(QStringLiteral("lblVersion"), QStringLiteral("Version ") + QStringLiteral(QUORVIK_VERSION));
    auto *description =
        makeLabel(QStringLiteral("lblDescription"),
                  QStringLiteral("Configuration and commissioning of Sarvex digital DC motor drives.\n"
                                 "Halvane Drives, technical support: support@halvane.example"));
    auto *disclaimer =
        makeLabel(QStringLiteral("lblDisclaimer"),
                  QStringLiteral("A change made here can move a machine at once. Make sure that nobody is\n"
                                 "in danger, and follow the drive's manual, before you run a motor.\n"
                                 "www.halvane.example"));
    for (QLabel *label : {description, disclaimer})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto *sysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    sysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    On(ok, &QPushButton::clicked, this, [this] { accept(); });
    On(sysInfo, &QPushButton::clicked, this, [this] { StartSysInfo(); });

    auto *text = new QVBoxLayout;
    text->addWidget(title);
    text->addWidget(version);
    text->addSpacing(fontMetrics().height() / 2);
    text->addWidget(description);
    text->addSpacing(fontMetrics().height() / 2);
    text->addWidget(disclaimer);
    text->addStretch();
    auto *head = new QHBoxLayout;
    head->setSpacing(fontMetrics().height());
    head->addWidget(icon);
    head->addLayout(text, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(sysInfo);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head, 1);
    layout->addSpacing(fontMetrics().height());
    layout->addLayout(buttons);
    ok->setFocus();
}

void FormAbout::StartSysInfo()
{
    if (!StartSystemInformation())
        desk().asker.MsgBox(QStringLiteral("System Information Is Unavailable At This Time"), MsgButtons::Ok,
                            MsgIcon::None, QString());
}

} // namespace quorvik
