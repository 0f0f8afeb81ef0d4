#pragma once

#include "desktop/Form.h"
#include "settings/Report.h"

#include <array>

class QLabel;
class QRadioButton;
class QTreeView;

namespace quorvik
{

class FilePrint;
class ParameterListModel;

/** "View Parameters": the parameter table as a list, all of it or what differs from the factory values. */
class FormViewParameters : public Form
{
    Q_OBJECT

public:
    /** @param filter which of the two option buttons is checked at first. */
    FormViewParameters(Desk &desk, FilePrint &print, ReportFilter filter);

    static const QString &Caption();

    /** With all columns in sight. */
    QSize sizeHint() const override;

    /** The rows as shown, in their order. */
    const QList<ReportRow> &Rows() const;
    /** Checks the option button, which rebuilds the list. */
    void SelectView(ReportFilter filter);

private:
    void BuildList();
    QWidget *MakeFilters();
    QWidget *MakeListView();
    QWidget *MakeCommands(FilePrint &print);
    void CommandExport_Click();

    ReportFilter filter_;
    QSize size_;
    ParameterListModel *list_;
    QTreeView *listView_;
    QLabel *labelTotal_;
    std::array<QRadioButton *, 2> optionView_{};
};

/** Shows the list with a filter: the one that is open, or a new one. */
void OpenViewParameters(Desk &desk, FilePrint &print, ReportFilter filter);

} // namespace quorvik
