#include "desktop/TypeToChoose.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
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
        if (whole.isValid() || !typed_.at(0).isLetter())
            return whole.isValid() ? whole : first(typed_);
        for (int row = 0; row < model()->rowCount(); ++row) {
            const QString item = model()->index(row, 0).data().toString();
            if (QStringView(item).mid(item.indexOf(u' ') + 1).startsWith(typed_, Qt::CaseInsensitive))
                return model()->index(row, 0);
        }
        return {};
    }

    QString typed_;
    QPersistentModelIndex before_;
    QElapsedTimer sinceKey_;
};

class OptionKeys : public QObject
{
public:
    explicit OptionKeys(const QList<QAbstractButton *> &options)
        : QObject(options.first())
        , options_(options)
    {
        for (QAbstractButton *option : options_)
            option->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *key = static_cast<const QKeyEvent *>(event);
        const QString text = key->text();
        if (text.isEmpty() || !text.at(0).isPrint() || (key->modifiers() & ~WithText) != Qt::NoModifier)
            return false;
        if (typed_.isEmpty() || sinceKey_.hasExpired(PauseMs))
            typed_.clear();
        // A blank that begins no word is a click.
        if (typed_.isEmpty() && text.at(0).isSpace())
            return false;
        sinceKey_.start();
        typed_ += text;
        if (!Choose()) {
            typed_ = text;
            Choose();
        }
        return true;
    }

private:
    static constexpr Qt::KeyboardModifiers WithText = Qt::ShiftModifier | Qt::KeypadModifier;

    bool Choose()
    {
        const qsizetype count = options_.size();
        qsizetype first = 0;
        for (qsizetype i = 0; i < count; ++i)
            if (options_[i]->isChecked())
                first = i;
        if (typed_.size() == 1)
            ++first;
        for (qsizetype i = 0; i < count; ++i) {
            QAbstractButton *option = options_[(first + i) % count];
            if (option->isHidden() || !option->text().startsWith(typed_, Qt::CaseInsensitive))
                continue;
            option->setChecked(true);
            option->setFocus();
            return true;
        }
        return false;
    }

    QList<QAbstractButton *> options_;
    QString typed_;
    QElapsedTimer sinceKey_;
};

} // namespace

void TypeToChoose(QComboBox *list)
{
    list->setView(new NumberedView(list));
}

void TypeToChoose(const QList<QAbstractButton *> &options)
{
    new OptionKeys(options);
}

} // namespace quorvik
