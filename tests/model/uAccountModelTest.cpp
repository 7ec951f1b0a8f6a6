#include "uModelFixture.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"

namespace {

class TAccountModelTest : public TModelTest
{
protected:
    void SetUp() override
    {
        TModelTest::SetUp();
        User = "o'u\\_" + Name();
    }
    void TearDown() override
    {
        if (FDatabase)
            Server().Exec("DROP USER IF EXISTS " + Quoted(User) + "@'%'");
        TModelTest::TearDown();
    }
    static QString Quoted(const QString &text)
    {
        return TDbmSqlValueUtils::FormatString(text, true);
    }
    QString Grants() const
    {
        QStringList lines;
        for (const QStringList &row : Server().Rows("SHOW GRANTS FOR " + Quoted(User) + "@'%'"))
            lines.append(row.first());
        return lines.join('\n');
    }
    TDbmUserPrivilegesList::TItemPtr Account()
    {
        TDbmUserPrivilegesList::TItemPtr item;
        EXPECT_TRUE(Manager->UsersPrivileges().TryGetByNameAndHost(User, "%", item));
        return item;
    }
    TDbmUserPrivilegesEntity Entity(const TDbmPrivileges &privileges) const
    {
        TDbmUserPrivilegesEntity entity;
        entity.UserName = User;
        entity.HostName = "%";
        entity.Privileges = privileges;
        return entity;
    }
    bool MayLogIn(const QString &password) const
    {
        TDbmConnectionProfile profile = ServerProfile(Server());
        profile.UserName = User;
        profile.Password = password;
        TDbmProvider provider;
        provider.SetParams(profile);
        try {
            provider.OpenConnection();
            return true;
        } catch (const EDacMySqlError &) {
            return false;
        }
    }

    QString User;
};

TEST_P(TAccountModelTest, PasswordsAreWhatWasTyped)
{
    const QStringList passwords{"plain", "it's", "a\\b", "\"'\\';", "tab\tä"};
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), passwords.first());
    for (const QString &password : passwords) {
        Manager->Operations().UpdateUser(*Account(), Account()->Entity(), true, password);
        EXPECT_TRUE(MayLogIn(password)) << password.toStdString();
        EXPECT_FALSE(MayLogIn(password + '\\')) << password.toStdString();
    }
    Manager->Operations().UpdateUser(*Account(), Account()->Entity(), true, "");
    EXPECT_TRUE(MayLogIn(""));
}

TEST_P(TAccountModelTest, APasswordIsThereFromTheStartWhereTheServerWantsOne)
{
    const QString what = IsMySQL() ? "COMPONENT 'file://component_validate_password'"
                                   : "SONAME 'simple_password_check'";
    Server().Exec("INSTALL " + what);
    const auto create = [&](const QString &password) {
        Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), password);
    };
    EXPECT_THROW(create("poor"), EDacMySqlError);
    EXPECT_NO_THROW(create("Rich'1, and long"));
    Server().Exec("UNINSTALL " + what);
    EXPECT_TRUE(MayLogIn("Rich'1, and long"));
}

TEST_P(TAccountModelTest, AnUpdateKeepsPartialRevokes)
{
    if (!IsMySQL())
        GTEST_SKIP() << "rights are not revoked in part there";
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({privSelect, privInsert}),
                                     "x");
    Server().Exec("SET GLOBAL partial_revokes = ON");
    Server().Exec("REVOKE INSERT ON `" + Name() + "`.* FROM " + Quoted(User) + "@'%'");
    const QString revoke = "REVOKE INSERT ON `" + Name() + "`.*";
    EXPECT_TRUE(Grants().contains(revoke));
    TDbmUserPrivilegesEntity edited = Account()->Entity();
    edited.Privileges.Include(privDelete);
    edited.MaxQueriesPerHour = 7;
    Manager->Operations().UpdateUser(*Account(), edited, false, {});
    EXPECT_TRUE(Grants().contains("GRANT SELECT, INSERT, DELETE ON *.*")) << Grants().toStdString();
    EXPECT_TRUE(Grants().contains(revoke)) << Grants().toStdString();
    EXPECT_EQ(Account()->Entity().MaxQueriesPerHour, 7);
    Manager->Operations().DeleteUser(*Account());
    Server().Exec("SET GLOBAL partial_revokes = OFF");
}

TEST_P(TAccountModelTest, AnAccountThatIsGoneIsNotMadeAnew)
{
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), "x");
    const auto account = Account();
    Server().Exec("DROP USER " + Quoted(User) + "@'%'");
    EXPECT_THROW(Manager->Operations().UpdateUser(*account, Entity({privSelect}), false, {}),
                 EException);
    EXPECT_EQ(Server().Value("SELECT COUNT(*) FROM mysql.user WHERE user = " + Quoted(User)), "0");
}

INSTANTIATE_ON_BOTH_SERVERS(TAccountModelTest);

} // namespace
