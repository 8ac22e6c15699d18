#pragma once

#include "engine/pro.h"

#include <string>

namespace tabrixdb {

// Keeps what the making of one grid sets for itself from the grid around it: until the end of the scope.
class KeptSettings {
public:
    explicit KeptSettings(Pro& pro)
        : pro_(pro),
          edit_mode_(pro.grid_edit_mode),
          single_(pro.single_grid_template),
          permit_(pro.permit) {}

    ~KeptSettings() {
        pro_.grid_edit_mode = edit_mode_;
        pro_.single_grid_template = single_;
        pro_.permit = permit_;
    }

    KeptSettings(const KeptSettings&) = delete;
    KeptSettings& operator=(const KeptSettings&) = delete;

private:
    Pro& pro_;
    const std::string edit_mode_;
    const bool single_;
    const std::string permit_;
};

} // namespace tabrixdb
