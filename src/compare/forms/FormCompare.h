#pragma once

#include "compare/forms/CompareSides.h"
#include "desktop/Form.h"
#include "link/ParamValue.h"
#include "model/Intent.h"

#include <functional>
#include <map>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTimer;

namespace quorvik
{

class CompareHost;
class DifferenceModel;
class DifferenceProxy;
class DifferenceView;
struct RefusedRow;

/** "Compare": two or three parameter sets side by side, and values copied from one to another. */
class FormCompare : public Form
{
    Q_OBJECT

public:
    FormCompare(Desk &desk, CompareHost &host);

    static const QString &Name();

    /** Puts the drive, which is read, beside the open set or another one. */
    void CompareWithDrive(const CompareSource &other = {CompareSource::Kind::OpenSet});

    /** Puts the open set beside the factory's, and shows the row of one parameter. */
    void CompareWithFactory(int p);

    /**
     * Puts a set as it was beside the drive, which is read, or off line beside the open set.
     * @param note what is to be said of it.
     * @param takesBack whether its values are to be taken back: then all of them that differ are ticked, and
     * nothing else is shown.
     */
    void CompareWithPast(const ParameterSet &set, const QString &note, bool takesBack);

    CompareSides &Sides() { return *sides_; }
    /** Lets the user choose the file to export to; the program shows a dialog. */
    std::function<std::optional<QString>(const QString &folder)> ChooseExport;

private:
    QWidget *MakeBanner();
    QWidget *MakeFilters();
    QWidget *MakeCopying();
    QWidget *MakeCommands();
    QCheckBox *MakeCheck(const QString &name, const QString &caption, bool isChecked);

    void CompareAnew();
    void FollowOpenSet();
    void OnFilterChanged();
    /** All filters as they usually are, but for one. */
    void SetFilters(bool onlyDiffering);
    void ShowBanner();
    void ListDirections();
    void ShowCounts();

    void TickShown(bool isTicked);
    void CommandCopy_Click();
    /** The values of the ticked rows in sight that the target has otherwise. */
    std::vector<ParamValue> ValuesToCopy(int from, int to) const;
    void CopyIntoOpenSet(const std::vector<ParamValue> &values, int from);
    void CopyIntoFile(const std::vector<ParamValue> &values, int from, int to);
    void CopyIntoDrive(std::vector<ParamValue> values, int from);
    void TellCopied(std::size_t wanted, const std::vector<RefusedRow> &refused, const QString &target);
    /** @param reasons by parameter, why it was not copied. */
    void TellRefused(const QString &sentence, const std::map<int, QString> &reasons);
    void Tell(const QString &sentence);
    /** What copying from a side is to the history. */
    IntentInfo IntentOf(int from) const;
    void CommandExport_Click();

    CompareHost &host_;
    QStringList blocks_;
    CompareSides *sides_;
    DifferenceModel *model_;
    DifferenceProxy *proxy_;
    DifferenceView *view_;
    QLabel *labelBanner_;
    QLabel *labelCounts_;
    QLabel *labelOutcome_;
    QLineEdit *textSearch_;
    QCheckBox *checkDiffering_;
    QCheckBox *checkChanged_;
    QCheckBox *checkKnown_;
    std::array<QCheckBox *, RowKinds> checkKinds_{};
    QComboBox *comboDirection_;
    QTimer *timerUpdateScreen_;
    bool isOpenSetOld_ = false;
    QStringList shownNames_;
};

} // namespace quorvik
