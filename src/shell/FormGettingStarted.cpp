#include "shell/FormGettingStarted.h"

#include "desktop/EnterKey.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSvgRenderer>
#include <QSvgWidget>
#include <algorithm>

static void LoadPicture()
{
    Q_INIT_RESOURCE(shell);
}

namespace quorvik
{

FormGettingStarted::FormGettingStarted(Desk &desk, QWidget *mainWindow, bool showTips)
    : Form(desk, QStringLiteral("FormGettingStarted"), QStringLiteral("Getting Started"),
           QStringLiteral("Getting Started.htm"))
{
    setParent(mainWindow, Qt::Dialog);

    LoadPicture();
    auto *picture = new QSvgWidget(QStringLiteral(":/welcome.svg"), this);
    picture->setObjectName(QStringLiteral("Picture1"));
    picture->renderer()->setAspectRatioMode(Qt::KeepAspectRatio);
    const int pictureHeight = fontMetrics().height() * 17;
    picture->setFixedWidth(pictureHeight * picture->sizeHint().width() / picture->sizeHint().height());
    picture->setMinimumHeight(pictureHeight);
    picture->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    auto *greeting = new QLabel(QStringLiteral("Getting Started..."), this);
    greeting->setObjectName(QStringLiteral("Label1"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    greeting->setFont(large);
    auto *tip = new QLabel(this);
    tip->setObjectName(QStringLiteral("LabelTip"));
    tip->setWordWrap(true);
    tip->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    tip->setMinimumWidth(fontMetrics().averageCharWidth() * 48);
    tip->setText(QStringLiteral(
        "Select the Basic Setup Wizard under the Mentors menu to have the Quorvik Mentor assist you in "
        "setting "
        "up a drive in a basic configuration. Advanced users can use the Block menu to open individual "
        "parameter blocks for modification."));
    auto *meaning =
        new QLabel(QStringLiteral("Clear the check mark and this window stays away at the next start.\n"
                                  "Options, Show Tips on Startup, brings it back."),
                   this);
    meaning->setObjectName(QStringLiteral("LabelMeaning"));
    auto *loadOnStartup = new QCheckBox(QStringLiteral("&Load on Startup"), this);
    loadOnStartup->setObjectName(QStringLiteral("chkLoadOnStartup"));
    loadOnStartup->setChecked(showTips);
    auto *ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    ok->setFocus();
    MakeEnterPressButtons(this);

    auto *foot = new QHBoxLayout;
    foot->addWidget(loadOnStartup);
    foot->addStretch();
    foot->addWidget(ok);
    auto *text = new QVBoxLayout;
    text->setContentsMargins(fontMetrics().height(), fontMetrics().height(), fontMetrics().height(),
                             fontMetrics().height());
    text->setSpacing(fontMetrics().height());
    text->addWidget(greeting);
    text->addWidget(tip, 1);
    text->addWidget(meaning);
    text->addLayout(foot);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(picture);
    layout->addLayout(text, 1);

    On(loadOnStartup, &QCheckBox::clicked, this,
       [this](bool isChecked) { Q_EMIT ShowTipsChanged(isChecked); });
    On(ok, &QPushButton::clicked, this, [this] { close(); });

    resize(sizeHint().expandedTo(minimumSizeHint()));
    QRect place(mainWindow->pos() +
                    QPoint((mainWindow->width() - width()) / 2, (mainWindow->height() - height()) / 2),
                size());
    // A main window smaller than this one must not push it off the screen.
    const QRect room = mainWindow->screen()->availableGeometry();
    place.moveLeft(std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - width())));
    place.moveTop(std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() + 1 - height())));
    move(place.topLeft());
}

} // namespace quorvik
