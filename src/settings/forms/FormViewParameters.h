#pragma once

#include "desktop/Form.h"
#include "settings/Report.h"

#include <QTimer>
#include <array>
#include <set>

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTreeView;

namespace quorvik
{

class FilePrint;
class ParameterListModel;

/**
 * "View Parameters": the parameter table as a list, all of it or what differs from the factory values, and of
 * that what is searched for. Values and their states follow the table; which rows there are changes on
 * Refresh or with the filters. A row leads to its box, and can be edited.
 */
class FormViewParameters : public Form
{
    Q_OBJECT

public:
    /** @param filter which of the two option buttons is checked at first. */
    FormViewParameters(Desk &desk, FilePrint &print, ReportFilter filter);

    static const QString &Caption();

    /** With all columns in sight, also those that are hidden now. */
    QSize sizeHint() const override;

    /** The rows as shown, in their order. */
    const QList<ReportRow> &Rows() const;
    /** Checks the option button, which rebuilds the list. */
    void SelectView(ReportFilter filter);
    /** Brings a row into sight and makes it the current one; does nothing where it is not among them. */
    void SelectParameter(int p);

private:
    void BuildList();
    QWidget *MakeFilters();
    QWidget *MakeSearch();
    void MakeKeys();
    /** Goes to the box of the current row, or edits its value. */
    void Open(bool edits);
    void RestoreColumns();
    void ShowColumnsMenu(const QPoint &place);
    void ShowRowMenu(const QPoint &place);
    void ReadFile();
    /** The parameter of the current row, or -1. */
    int CurrentParameter() const;
    QWidget *MakeListView();
    void FollowTable();
    void Follow();
    /** Whether state and age are columns: as the user chose, else on line, and while a drive is lost. */
    bool WantsStates() const;
    void ShowStates(bool isShown);
    QWidget *MakeCommands(FilePrint &print);
    void CommandExport_Click();

protected:
    void Unload() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ReportFilter filter_;
    QSize size_;
    ParameterListModel *list_;
    QTreeView *listView_;
    QCheckBox *checkStates_;
    QCheckBox *checkSettings_;
    QLineEdit *textSearch_;
    QLabel *labelTotal_;
    QString fileShown_;     ///< whose values stand in the last column
    std::set<int> changed_; ///< since the list followed last
    QTimer timerFollow_{this};
    std::array<QRadioButton *, 2> optionView_{};
};

/** Shows the list with a filter: the one that is open, or a new one. */
void OpenViewParameters(Desk &desk, FilePrint &print, ReportFilter filter);

} // namespace quorvik
