#pragma once

#include "data/db_source.h"
#include "engine/pro.h"
#include "template/offers.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// What the page has written for a grid: all templates that it gave, whichever of them is shown, and the
// contents of the columns that they show. By it is judged what a visitor may change, and by which columns
// sort and filter.
class GridText {
public:
    // `templates`: their paths; "" for one that was not given. Without a row template, which is the first,
    // the built-in one counts. `add_template`: in which buttons that save are for the new record. Borrows the
    // source for the time of the call.
    GridText(const Pro& pro, const DbSource& source, std::initializer_list<std::string_view> templates,
             std::string_view add_template);

    // What it offers for every record.
    const Offers& offers() const noexcept { return offers_; }

    // What its expressions and the source's query may offer for some of the records.
    const Offers& code_offers() const noexcept { return code_offers_; }

    // Whether it shows the column of that name, or says that visitors may sort and filter by it.
    bool has_column(std::string_view name) const;

private:
    void read_contents(const DbSource& source);
    void find_columns(const DbSource& source, std::string_view text);
    void find_offers(const Pro& pro, const DbSource& source);

    std::string text_; // of all templates, then of the contents without their expressions
    std::string code_;
    std::vector<std::string> columns_;
    std::string listed_columns_;
    Offers offers_, code_offers_;
};

} // namespace tabrixdb
