#pragma once

#include <QColor>
#include <QStringListModel>
#include <QTableView>
#include <functional>

class QLineEdit;

namespace quorvik
{

class ChannelModel;
class ParameterTable;
class TrendRecorder;
class TrendView;

/** The channels of the trend window: adds and removes them, shows their values, and says how each is drawn.
 */
class ChannelLegend : public QWidget
{
    Q_OBJECT

public:
    /** @param colourOf the colour of a curve as it is drawn. */
    ChannelLegend(const ParameterTable &table, TrendRecorder &recorder, TrendView &view,
                  std::function<QColor(int)> colourOf, QWidget *parent);

    /** A fast channel, or a slow one where there is no room; tells where it cannot be. */
    void AddChannel(int p);
    /** The newest values; the names follow a table of another length. */
    void Refresh();
    void FocusAdding();

Q_SIGNALS:
    /** A sentence for the user. */
    void Told(const QString &sentence);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void MakeTable();
    /** Columns that say something, and room for the names. */
    void FitColumns();
    void AddTyped();
    int CurrentParam() const;
    void Select(int param);
    void RemoveCurrent();
    /** To the plot above or below. */
    void MoveCurrent(int by);
    void ShowMenu(const QPoint &place);

    const ParameterTable &table_;
    TrendRecorder &recorder_;
    TrendView &view_;
    ChannelModel *model_;
    QTableView *tableChannels_;
    QLineEdit *textAdd_;
    QStringListModel names_; ///< by number
};

} // namespace quorvik
