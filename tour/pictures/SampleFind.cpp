#include "SampleFind.h"

#include "blocks/BlockCatalogue.h"
#include "find/EntrySources.h"
#include "find/HelpWords.h"
#include "model/ParameterTable.h"
#include "shell/FindAccess.h"

namespace quorvik
{

FindIndex SampleFind::MakeIndex()
{
    // The topics whose words the program knows are what the picture is for.
    HelpWords words;
    words.topics = {{QStringLiteral("AccelDecel.htm"),
                     QStringLiteral("Accel/Decel"),
                     QStringLiteral("References and ramps"),
                     {QStringLiteral("ramp")}}};
    FindIndex index;
    AddParameters(index, table_, BlockNames(table_.UpperBound() + 1), words);
    AddBlockWindows(index, words);
    AddTopics(index, words);
    return index;
}

} // namespace quorvik
