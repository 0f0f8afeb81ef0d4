#include "wizards/frame/FinishPage.h"

#include "desktop/Form.h"
#include "wizards/frame/WriteTable.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace quorvik
{

FinishPage::FinishPage(QWidget *parent, bool online, const QString &saveCaption)
    : WizardPage(parent, new WizardPicture(nullptr, QStringLiteral("A drive, set up"),
                                           [] { return PictureFile{"finished"}; }))
{
    AddHeading(QStringLiteral("Finished!"), ControlName("LabelFinish", 0));
    AddText(QStringLiteral("The Mentor has finished collecting information."), ControlName("LabelFinish", 1));
    AddText(online ? QStringLiteral("Drive must be in the Stop mode in order for Quorvik to successfully "
                                    "setup the Sarvex.\r\n\r\nPress Finish to complete the setup.")
                   : QStringLiteral("Press Finish to complete the setup."),
            ControlName("LabelFinish", 2));

    table_ = new WriteTable(this, QStringLiteral("Old Value"), QStringLiteral("New Value"), 9);
    table_->setAccessibleName(QStringLiteral("Parameters that will be written"));
    Content()->addWidget(table_, 1);

    failure_ = AddText({}, QStringLiteral("LabelPlanFailure"));
    failure_->hide();

    save_ = new QCheckBox(saveCaption, this);
    save_->setObjectName(QStringLiteral("CheckSaveDriveParameters"));
    save_->setEnabled(online);
    Content()->addWidget(save_);
    connect(save_, &QCheckBox::toggled, this, &FinishPage::SaveToggled);
}

bool FinishPage::SaveWanted() const
{
    return save_->isEnabledTo(this) && save_->isChecked();
}

void FinishPage::ShowLines(const std::vector<PlannedLine> &lines)
{
    failure_->hide();
    table_->show();
    std::vector<WriteRow> rows;
    rows.reserve(lines.size());
    for (const PlannedLine &line : lines)
        rows.push_back({line.param, line.name, line.oldText, line.newText, line.oldText != line.newText});
    table_->ShowRows(rows);
}

void FinishPage::ShowFailure(const QString &sentence)
{
    table_->hide();
    failure_->setText(sentence);
    failure_->show();
}

} // namespace quorvik
