#include "desktop/TypeToChoose.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QListView>

namespace quorvik
{

namespace
{

/** So much later a key begins a new word. */
constexpr int PauseMs = 1500;

/** The usual view takes a digit that is typed twice for a wish to go on, and a number that nothing has for
 * the part of it that something has: a wrong parameter, chosen without a word. */
class NumberedView : public QListView
{
public:
    explicit NumberedView(QWidget *parent)
        : QListView(parent)
    {
        setUniformItemSizes(true);
    }

    void keyboardSearch(const QString &keys) override
    {
        if (typed_.isEmpty() || sinceKey_.hasExpired(PauseMs)) {
            typed_.clear();
            before_ = currentIndex();
        }
        sinceKey_.start();
        typed_ += keys;
        const QModelIndex found = Find();
        setCurrentIndex(found.isValid() ? found : QModelIndex(before_));
    }

private:
    QModelIndex Find() const
    {
        const auto first = [this](const QString &beginning) {
            const QModelIndexList found =
                model()->match(model()->index(0, 0), Qt::DisplayRole, beginning, 1, Qt::MatchStartsWith);
            return found.value(0);
        };
        const QModelIndex whole = first(typed_ + u' ');
        return whole.isValid() ? whole : first(typed_);
    }

    QString typed_;
    QPersistentModelIndex before_;
    QElapsedTimer sinceKey_;
};

} // namespace

void TypeToChoose(QComboBox *list)
{
    list->setView(new NumberedView(list));
}

} // namespace quorvik
