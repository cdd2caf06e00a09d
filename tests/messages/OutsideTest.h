#pragma once
// A fresh process with an outside of its own for every test.

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {

class OutsideTest : public testing::Test {
protected:
    OutsideTest() { ResetProcessState(); }
    ~OutsideTest() override { ResetProcessState(); }  // a log that is still open writes to the outside

    ScopedPlatform outside;
};

}  // namespace kvl
