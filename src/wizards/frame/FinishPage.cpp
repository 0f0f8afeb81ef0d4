#include "wizards/frame/FinishPage.h"

#include "desktop/Form.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvik
{

namespace
{

void DrawFinished(QPainter &painter, const Ink &ink)
{
    DrawDrive(painter, ink, {50, 70}, 120);
    UseShape(painter, ink.line, ink.accent);
    painter.drawEllipse(QPointF(160, 230), 32, 32);
    UsePen(painter, ink.onAccent, 5);
    painter.drawPolyline(QPolygonF{{145, 231}, {156, 243}, {176, 218}});
}

enum Column { Number, Name, OldValue, NewValue, ColumnCount };

} // namespace

FinishPage::FinishPage(QWidget *parent, bool online, const QString &saveCaption)
    : WizardPage(parent, new WizardPicture(nullptr, QStringLiteral("A drive, set up"), DrawFinished))
{
    AddHeading(QStringLiteral("Finished!"), ControlName("LabelFinish", 0));
    AddText(QStringLiteral("The Mentor has finished collecting information."), ControlName("LabelFinish", 1));
    AddText(online ? QStringLiteral("Drive must be in the Stop mode in order for Quorvik to successfully "
                                    "setup the Sarvex.\r\n\r\nPress Finish to complete the setup.")
                   : QStringLiteral("Press Finish to complete the setup."),
            ControlName("LabelFinish", 2));

    table_ = new QTableWidget(0, ColumnCount, this);
    table_->setObjectName(QStringLiteral("TableWrites"));
    table_->setAccessibleName(QStringLiteral("Parameters that will be written"));
    table_->setHorizontalHeaderLabels({QStringLiteral("Number"), QStringLiteral("Name"),
                                       QStringLiteral("Old Value"), QStringLiteral("New Value")});
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setTabKeyNavigation(false);
    table_->setAlternatingRowColors(true);
    table_->setShowGrid(false);
    table_->setWordWrap(true);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(Number, QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    table_->horizontalHeader()->setHighlightSections(false);
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
    table_->setRowCount(int(lines.size()));
    for (int row = 0; row < int(lines.size()); ++row) {
        const PlannedLine &line = lines[std::size_t(row)];
        const QString texts[] = {QString::number(line.param), line.name, line.oldText, line.newText};
        for (int column = 0; column < ColumnCount; ++column) {
            auto *item = new QTableWidgetItem(texts[column]);
            item->setTextAlignment((column == Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
            if (column == NewValue && line.oldText != line.newText) {
                QFont font = item->font();
                font.setBold(true);
                item->setFont(font);
            }
            table_->setItem(row, column, item);
        }
    }
    // The values of a link hold names, which wrap rather than squeeze the column of names.
    const int widest = fontMetrics().height() * 9;
    for (const int column : {OldValue, NewValue}) {
        table_->resizeColumnToContents(column);
        table_->setColumnWidth(column, std::min(table_->columnWidth(column), widest));
    }
}

void FinishPage::ShowFailure(const QString &sentence)
{
    table_->hide();
    failure_->setText(sentence);
    failure_->show();
}

} // namespace quorvik
