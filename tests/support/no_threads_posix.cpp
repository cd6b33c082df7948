#include "tests/support/no_threads.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace tollivar::test {

NoThreads::NoThreads()
{
    constexpr std::size_t kMoreThanThereIs = std::size_t{1} << 60U;
    EXPECT_EQ(pthread_getattr_default_np(&m_before), 0);
    pthread_attr_t without{};
    EXPECT_EQ(pthread_getattr_default_np(&without), 0);
    EXPECT_EQ(pthread_attr_setstacksize(&without, kMoreThanThereIs), 0);
    EXPECT_EQ(pthread_setattr_default_np(&without), 0);
    pthread_attr_destroy(&without);
}

NoThreads::~NoThreads()
{
    EXPECT_EQ(pthread_setattr_default_np(&m_before), 0);
    pthread_attr_destroy(&m_before);
}

} // namespace tollivar::test
