#pragma once

#include <QTimer>
#include <QTreeView>

namespace quorvik
{

class HistoryModel;

/** The list of the history. It asks for older pages before they come in sight, and what comes anew on top
 * does not move what is looked at. */
class HistoryView : public QTreeView
{
    Q_OBJECT

public:
    HistoryView(HistoryModel *model, QWidget *parent);

    /** Takes up what is new. */
    void Follow();
    /** The selected lines in their order; the current one where none is selected. */
    QModelIndexList SelectedLines() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    void reset() override;

Q_SIGNALS:
    /** By a double click or Enter. */
    void Chosen(const QModelIndex &index);
    void CopyWanted();
    /** More of the journal was looked through. */
    void Fetched();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void rowsInserted(const QModelIndex &above, int first, int last) override;

private:
    void SizeColumns();
    void OpenRuns(int first, int last);
    void FetchAhead();

    HistoryModel *model_;
    QTimer timerFetch_{this};
};

} // namespace quorvik
