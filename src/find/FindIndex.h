#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

namespace quorvik
{

/** What can be found; of two that fit equally well the earlier kind comes first. */
enum class FindKind { Parameter, Window, Command, Topic };

/** One thing that can be found. */
struct FindEntry {
    FindKind kind = FindKind::Parameter;
    int number = 0; ///< of a parameter
    QString key;    ///< tells it from all others: "(22)", the name of a menu entry, the page of a topic
    QString title;  ///< as it is called: "(22) Run Enable"
    QString place;  ///< where it stands: a block, a menu, a chapter of the help
};

/** What is found of an entry beside its title and its place. */
struct FindTexts {
    QStringList texts = {}; ///< what it can show, its unit, its words in the index of the help
    QStringList also = {};  ///< other words for those of its title
    QString help = {};      ///< what the help says of it
};

struct FindHit {
    int entry = 0; ///< number in the index
    int score = 0;
};

/**
 * All that can be found, by its words. A search compares with each different word once, so its time hangs on
 * the number of words and not on how often they stand somewhere.
 */
class FindIndex
{
public:
    void Add(const FindEntry &entry, const FindTexts &texts);

    int Count() const { return int(entries_.size()); }
    const FindEntry &At(int entry) const { return entries_[std::size_t(entry)]; }
    /** The entry with that key, or -1. */
    int Of(const QString &key) const { return byKey_.value(key, -1); }

    /** Why an entry is found, where its title and its place do not tell: the texts or words of the help that
     * fit. */
    QStringList Reasons(int entry, const QString &query) const;

    /**
     * The entries that each word of the query fits, in any order, the best first: names before other texts,
     * and those before the help; whole words before their beginnings, parts, and words with typing errors.
     * A parameter's number puts that parameter first. Typing errors are looked for only where no name or
     * text fits without, and in words of the help only where nothing at all is found.
     * @param query empty, or without a letter or digit, finds nothing.
     */
    std::vector<FindHit> Search(const QString &query) const;

private:
    enum class Weight { Help, Place, Also, Title };
    struct Posting {
        int entry;
        Weight weight;
    };
    struct Word {
        QString text;
        std::vector<Posting> postings;
    };
    enum class Forgiving { Nothing, Names, Help };
    using Scores = std::vector<int>;

    void AddWords(const QStringList &words, Weight weight);
    void FitWord(const QString &typed, Forgiving forgiving, Scores &best) const;
    std::vector<FindHit> Search(const QStringList &typed, Forgiving forgiving) const;
    int TitleBonus(int entry, const QStringList &typed) const;

    std::vector<FindEntry> entries_;
    std::vector<QString> titles_; ///< folded, their words parted by a blank
    std::vector<FindTexts> texts_;
    QHash<QString, int> byKey_;
    std::vector<Word> words_;
    QHash<QString, int> wordNumbers_;
};

} // namespace quorvik
