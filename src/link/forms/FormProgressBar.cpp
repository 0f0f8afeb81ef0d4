#include "link/forms/FormProgressBar.h"

#include "platform/Guard.h"
#include "platform/Progress.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int BarColumns = 44;

} // namespace

FormProgressBar::FormProgressBar(Desk &desk, QWidget *owner, Progress &progress)
    : DialogForm(desk, owner, QStringLiteral("FormProgressBar"), progress.Title(),
                 QStringLiteral("Going On Line.htm"))
    , progress_(progress)
{
    setProperty("Tag", QString::number(progress.Tag()));

    auto *progressBarRead = new QProgressBar(this);
    progressBarRead->setObjectName(QStringLiteral("ProgressBarRead"));
    progressBarRead->setAccessibleName(QStringLiteral("Progress"));
    progressBarRead->setRange(0, progress.Steps());
    progressBarRead->setMinimumWidth(BarColumns * fontMetrics().averageCharWidth());
    On(&progress, &Progress::Advanced, progressBarRead, [progressBarRead](int step) {
        progressBarRead->setValue(std::clamp(step, 0, progressBarRead->maximum()));
    });
    On(&progress, &Progress::StepsChanged, progressBarRead,
       [progressBarRead](int steps) { progressBarRead->setRange(0, steps); });
    auto *labelDoing = new QLabel(this);
    labelDoing->setObjectName(QStringLiteral("LabelDoing"));
    labelDoing->hide();
    On(&progress, &Progress::Said, labelDoing, [labelDoing](const QString &sentence) {
        labelDoing->setText(sentence);
        labelDoing->show();
    });
    On(&progress, &Progress::Ended, this, [this] { accept(); });

    auto *commandCancel = new QPushButton(QStringLiteral("Cancel"), this);
    commandCancel->setObjectName(QStringLiteral("CommandCancel"));
    On(commandCancel, &QPushButton::clicked, this, [this] { reject(); });
    // An Enter that was meant for the dialog before this one must not end the operation.
    commandCancel->setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFocus();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(labelDoing);
    layout->addWidget(progressBarRead);
    layout->addWidget(commandCancel, 0, Qt::AlignHCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FormProgressBar::reject()
{
    progress_.Cancel();
    // An operation that ended at once has closed the window.
    if (isVisible())
        DialogForm::reject();
}

} // namespace quorvik
