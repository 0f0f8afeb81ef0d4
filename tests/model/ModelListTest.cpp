#include "model/ModelList.h"

#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(ModelList, PutsNonRegenerativeModelsFirst)
{
    const QStringList items = ModelListItems();
    ASSERT_EQ(items.size(), 20);
    EXPECT_EQ(items.first(), QStringLiteral("SVN020-000 (36 Amps)"));
    EXPECT_EQ(items.at(10), QStringLiteral("SVR020-000 (36 Amps)"));
    EXPECT_EQ(items.last(), QStringLiteral("SVR300-000 (510 Amps)"));
}

TEST(ModelList, FindsItsWayBackFromItemToCode)
{
    for (const int code : {1, 5, 10, 17, 23, 26})
        EXPECT_EQ(ModelOfListItem(ModelListItems().at(ModelListIndex(code))), code);
    EXPECT_EQ(ModelListIndex(0), 0) << "an undefined model";
    EXPECT_EQ(ModelOfListItem(ModelListItems().at(ModelListIndex(27))), 23) << "27 reads as 23 does";
    EXPECT_THROW(ModelOfListItem(QStringLiteral("SVX999-000 (1 Amps)")), RuntimeFailure);
    EXPECT_THROW(ModelListIndex(33), RuntimeFailure);
}

} // namespace quorvik
