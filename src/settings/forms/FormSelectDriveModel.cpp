#include "settings/forms/FormSelectDriveModel.h"

#include "model/ModelList.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace quorvik
{

FormSelectDriveModel::FormSelectDriveModel(Desk &desk, QWidget *owner)
    : DialogForm(desk, owner, QStringLiteral("FormSelectDriveModel"), QStringLiteral("Select Drive Model"),
                 QStringLiteral("Select Drive Model.htm"))
    , comboModels_(new QComboBox(this))
{
    comboModels_->setObjectName(QStringLiteral("ComboModels"));
    comboModels_->setAccessibleName(QStringLiteral("Drive model and rated current"));
    comboModels_->setMaxVisibleItems(20);
    comboModels_->setMinimumContentsLength(40);
    comboModels_->addItems(ModelListItems());
    comboModels_->setCurrentIndex(ModelListIndex(desk.table.Value(Param::DriveModel)));

    auto *labelMeaning = new QLabel(
        QStringLiteral(
            "The model stands on the drive's nameplate. It decides the rated current and the\n"
            "limits of the motor's. \"SVR\" models can brake and turn both ways, \"SVN\" ones cannot."),
        this);
    labelMeaning->setObjectName(QStringLiteral("LabelMeaning"));

    auto *commandOk = new QPushButton(QStringLiteral("OK"), this);
    commandOk->setObjectName(QStringLiteral("CommandOK"));
    commandOk->setDefault(true);
    auto *commandCancel = new QPushButton(QStringLiteral("Cancel"), this);
    commandCancel->setObjectName(QStringLiteral("CommandCancel"));
    On(commandOk, &QPushButton::clicked, this, [this] { CommandOK_Click(); });
    On(commandCancel, &QPushButton::clicked, this, [this] { reject(); });

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(commandOk);
    buttons->addWidget(commandCancel);
    buttons->addWidget(MakeCommandHelp());

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(comboModels_);
    layout->addWidget(labelMeaning);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height());
    layout->addLayout(buttons);
    comboModels_->setFocus();
}

void FormSelectDriveModel::CommandOK_Click()
{
    // Choosing a model is no edit: nothing is sent, and neither file nor drive counts as modified.
    ParameterTable &table = desk().table;
    const Intent intent(table, Origin::EditDialog, QStringLiteral("Select Drive Model"));
    table.SetValue(Param::DriveModel, ModelOfListItem(comboModels_->currentText()), ChangeCause::Entered);
    table.RefreshDependentParams(Param::DriveModel);
    accept();
}

} // namespace quorvik
