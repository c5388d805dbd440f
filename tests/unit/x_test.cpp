#include <gtest/gtest.h>
#include "test_phone.h"
TEST(A,B){TARN::Test::TestPhone p; EXPECT_EQ(p.TakeCalls().size(),0U);}
