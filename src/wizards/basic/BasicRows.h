#pragma once

#include "wizards/basic/BasicSetup.h"

#include <QObject>
#include <array>

class QGridLayout;
class QLabel;

namespace quorvik
{

class EntryBox;

/** A text box with the caption before it and the unit after it. */
struct EntryRow {
    QLabel *label = nullptr;
    EntryBox *box = nullptr;
    QLabel *unit = nullptr;

    void Enable(bool enable) const;
};

/** The rows of all typed answers, built from the table of entries and kept in step with the answers. */
class BasicRows : public QObject
{
    Q_OBJECT

public:
    explicit BasicRows(BasicSetup &setup);

    /** Builds an entry's row into three columns of a grid. */
    void Make(QWidget *parent, QGridLayout *grid, int row, Entry entry, int column = 0);

    const EntryRow &At(Entry entry) const { return rows_[std::size_t(entry)]; }
    void Enable(Entry first, int count, bool enable);
    void SetText(Entry entry, const QString &text);

Q_SIGNALS:
    void Changed(quorvik::Entry entry);
    void Entered(quorvik::Entry entry);

private:
    void Reformat(Entry entry);

    BasicSetup &setup_;
    std::array<EntryRow, EntryCount> rows_;
};

} // namespace quorvik
