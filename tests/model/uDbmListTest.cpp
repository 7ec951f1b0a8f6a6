#include "model/uDbmList.h"
#include "support/uException.h"

#include <gtest/gtest.h>

namespace {

class TRoot : public TDbmElement
{
public:
    TRoot() : TDbmElement(static_cast<TDbmElement *>(nullptr)) {}
};

/// Counts what the tree calls on it.
class TItem : public TDbmItem<TDbmDatabaseEntity>
{
public:
    explicit TItem(TDbmElement *owner) : TDbmItem(owner) {}
    int Created = 0;
    int EntitiesSet = 0;
    int EntitiesRead = 0;

protected:
    void DoCreate() override { ++Created; }
    void DoSetEntity() override { ++EntitiesSet; }
    void DoProcessEntity() override { ++EntitiesRead; }
};

/// A list over a server that is a list of names.
class TNames : public TDbmList<TItem, TDbmDatabaseEntity>
{
public:
    explicit TNames(TDbmElement *owner) : TDbmList(owner) {}

    QStringList Server;
    using TDbmList::Manager;

    bool Fails = false;
    int Reads = 0;

protected:
    TDbmComparer<TDbmDatabaseEntity> CreateEntityComparer() override
    {
        return TDbmComparers::CreateDatabaseEntityComparer();
    }
    TItemPtr CreateItem() override { return New<TItem>(this); }
    QList<TDbmDatabaseEntity> SelectEntities() override
    {
        ++Reads;
        if (Fails)
            throw EException("down");
        QList<TDbmDatabaseEntity> entities;
        for (const QString &name : Server) {
            TDbmDatabaseEntity entity;
            entity.DatabaseName = name;
            entity.Collation = QString::number(Reads);
            entities.append(entity);
        }
        return entities;
    }
    QString GetEntityKey(const TDbmDatabaseEntity &entity) const override
    {
        return entity.DatabaseName;
    }
};

class TListTest : public ::testing::Test
{
protected:
    QStringList Shown()
    {
        QStringList names;
        List->ForEach([&](TItem &item) { names += item.Entity().DatabaseName; });
        return names;
    }
    TNames::TItemPtr Item(const QString &name)
    {
        TNames::TItemPtr item;
        List->TryGetByName(name, item);
        return item;
    }

    TRoot Root;
    std::shared_ptr<TNames> List = TDbmElement::New<TNames>(&Root);
};

TEST_F(TListTest, ReadsOnceUntilItIsAskedAgain)
{
    List->Server = {"b", "a", "B"};
    EXPECT_EQ(List->Reads, 0);
    EXPECT_EQ(Shown(), (QStringList{"B", "a", "b"}));
    EXPECT_EQ(List->Count(), 3);
    EXPECT_EQ(List->Reads, 1);
    List->RequestProcess();
    EXPECT_EQ(List->Reads, 1);
    List->Count();
    EXPECT_EQ(List->Reads, 2);
}

TEST_F(TListTest, KeepsItemsOverAReloadAndForgetsWhatIsGone)
{
    List->Server = {"a", "b"};
    const auto a = Item("a");
    const auto b = Item("b");
    const auto snapshot = List->ToArray();
    List->Server = {"a", "c"};
    List->RequestProcess();
    EXPECT_EQ(Item("a"), a);
    EXPECT_EQ(a->Entity().Collation, "2");
    EXPECT_EQ(Item("b"), nullptr);
    EXPECT_EQ(b->StoredEntity() != nullptr, true); // its holder still reads it
    EXPECT_EQ(snapshot.size(), 2);
    EXPECT_EQ(Item("A"), nullptr) << "look-ups mind the case";
    EXPECT_EQ(a->Created, 1);
    EXPECT_EQ(a->EntitiesSet, 2);
    EXPECT_EQ(a->EntitiesRead, 0) << "a reload of the list brings the entity";
}

TEST_F(TListTest, AFailedLoadIsEmptyUntilSomebodyAsksAgain)
{
    List->Server = {"a"};
    const auto a = Item("a");
    List->Fails = true;
    List->RequestProcess();
    EXPECT_THROW(List->Count(), EException);
    EXPECT_EQ(List->Count(), 0);
    EXPECT_EQ(Item("a"), nullptr);
    EXPECT_EQ(List->Reads, 2);
    List->Fails = false;
    List->RequestProcess();
    EXPECT_EQ(Item("a"), a) << "identity survives the failure";
}

TEST_F(TListTest, AnItemOutlivesItsListAsItWasLastRead)
{
    List->Server = {"a"};
    const auto a = Item("a");
    const auto child = TDbmElement::New<TNames>(a.get());
    child->Server = {"x"};
    EXPECT_EQ(child->Count(), 1);
    EXPECT_EQ(a->Owner(), List.get());
    List.reset();
    EXPECT_EQ(a->Owner(), nullptr);
    EXPECT_FALSE(child->IsAttached());
    a->RequestProcess();
    a->RequestProcessOfOwner();
    child->RequestProcess();
    EXPECT_EQ(a->Entity().DatabaseName, "a");
    EXPECT_EQ(a->EntitiesRead, 0);
    EXPECT_EQ(child->Count(), 1);
    EXPECT_EQ(child->Reads, 1);
    EXPECT_THROW(a->OwnerAs<TNames>(), EException);
    EXPECT_THROW(child->Manager(), EException);
}

} // namespace
