// Tests that run once a row of a table.
#pragma once

#include <gtest/gtest.h>

/// ROW_TEST(Fixture, Name, rows) { const auto& row = GetParam(); ... } runs for each row of an array of
/// structs whose first member is `name`, each in a fixture of its own.
#define ROW_TEST(Fixture, Name, rows)                                                                        \
    class Name : public Fixture,                                                                             \
                 public testing::WithParamInterface<std::decay_t<decltype(*std::begin(rows))>> { };          \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        Rows, Name, testing::ValuesIn(rows), [](const auto& info) { return info.param.name; });              \
    TEST_P(Name, Row)
