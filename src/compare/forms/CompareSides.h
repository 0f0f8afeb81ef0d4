#pragma once

#include "compare/Differences.h"
#include "desktop/Desk.h"

#include <QWidget>

class QComboBox;
class QPushButton;

namespace quorvik
{

class CompareHost;
struct WriteReport;

/** Where a set comes from. */
struct CompareSource {
    enum class Kind : std::uint8_t { None, OpenSet, Drive, Factory, File, Backup, Unwritten, Past };

    Kind kind = Kind::None;
    QString path = {}; ///< of a file and a backup
    bool operator==(const CompareSource &) const = default;
};

/** The row of lists that say what is compared, with the sets behind them. */
class CompareSides : public QWidget
{
    Q_OBJECT

public:
    CompareSides(Desk &desk, CompareHost &host, QWidget *parent);

    int Count() const; ///< 2 or 3
    const CompareSource &Source(int side) const { return sources_[std::size_t(side)]; }
    const ParameterSet &Set(int side) const { return sets_[std::size_t(side)]; }
    bool Uses(const CompareSource &source) const;
    /** The sets compared, as many as Count(). */
    std::vector<const ParameterSet *> Sets() const;
    QStringList Names() const;
    /** Why sets are missing, or values of them, a sentence each. */
    QStringList Failures() const;

    /** @param side 0 to 2. */
    void Select(int side, const CompareSource &source);
    /** Lists a set of before under its name, in place of an earlier one. @param note what is to be said of
     * it. */
    void ListPast(const ParameterSet &set, const QString &note);
    /** Lets the user choose a file for a side. */
    void ChooseFile(int side);
    /** Whether values can be copied into a side's set: not into backups, and not into the factory table. */
    bool IsTarget(int side) const;
    /** Takes note of the link: once it was down, nobody knows that the drive is the one that was read. */
    void FollowLink();
    bool IsDriveCertain() const { return isDriveCertain_; }

    /** Reads the drive, going on line where that is needed; what it says then stands on its side, where it
     * has one. */
    void ReadDrive();
    /** After a write: what was read back stands for what was known of the drive. */
    void TakeWrite(const WriteReport &report);
    /** Reads the sets of one source again, not the drive's. */
    void Reload(const CompareSource &source);

Q_SIGNALS:
    /** The sets are other ones. */
    void Changed();

private:
    QWidget *MakeSide(int side);
    void ListSources();
    void Load(int side);
    QString CaptionOf(const CompareSource &source) const;

    Desk &desk_;
    CompareHost &host_;
    ParameterSet drive_;          ///< as it was read last
    QString driveFailure_;        ///< why there is none, or no newer one
    bool isDriveCertain_ = false; ///< it was read, and the link has been up ever since
    ParameterSet past_;           ///< worked out from the history; knows no row where there is none
    QString pastNote_;
    QList<CompareSource> files_; ///< chosen so far
    std::array<CompareSource, MostSets> sources_;
    std::array<ParameterSet, MostSets> sets_;
    std::array<QString, MostSets> failures_;
    std::array<QComboBox *, MostSets> lists_{};
    QPushButton *readDrive_;
};

} // namespace quorvik
