#pragma once

#include "Hosts/ItemHost.h"

namespace vantor {

/// Gives the item a place that nobody sees: the program measures and keeps its history.
class NoHost final : public ItemHost {
private:
    void display(Sample) override {}
};

}  // namespace vantor
