// Answers for the structural edits in the tests: every question gets Yes.
#pragma once

#include "monitor/editing.h"

namespace orm::test {

class AlwaysYes final : public EditPrompts {
public:
    bool askYesNo(const QString&, const QString&) override { return true; }
    void stop(const QString&, const QString&) override {}
};

}  // namespace orm::test
