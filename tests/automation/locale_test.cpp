#include "automation/locale.hpp"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

#include "automation/convert.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

TEST(Locale, ScopesRestoreWhatWasCurrent) {
    EXPECT_EQ(Locale::current().name, u"en-US");
    {
        LocaleScope spain(Locale::spanish_spain());
        EXPECT_EQ(to_string(Variant(1.5)), u"1,5");
        EXPECT_EQ(to_string(Variant(true)), u"Verdadero");
    }
    EXPECT_EQ(to_string(Variant(1.5)), u"1.5");
}

#ifdef _WIN32
std::u16string platform(LCTYPE what) {
    wchar_t buffer[128];
    int n = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, buffer, 128);
    return std::u16string(reinterpret_cast<const char16_t*>(buffer), n > 0 ? static_cast<size_t>(n - 1) : 0);
}

TEST(Locale, OnWindowsTheDefaultIsTheUsersRegionalSettings) {
    const Locale user = Locale::user_default();
    EXPECT_EQ(user.decimal, platform(LOCALE_SDECIMAL));
    EXPECT_EQ(user.thousands, platform(LOCALE_STHOUSAND));
    EXPECT_EQ(user.currency, platform(LOCALE_SCURRENCY));
    EXPECT_EQ(user.short_date, platform(LOCALE_SSHORTDATE));
    EXPECT_EQ(user.month_names[0], platform(LOCALE_SMONTHNAME1));
    EXPECT_EQ(user.day_names[0], platform(LOCALE_SDAYNAME7)) << "the language's weeks start on Sunday";
}
#else
TEST(Locale, ElsewhereTheDefaultIsEnglishUnitedStates) {
    EXPECT_EQ(Locale::user_default().name, u"en-US");
}
#endif

}  // namespace
}  // namespace celdo::automation
