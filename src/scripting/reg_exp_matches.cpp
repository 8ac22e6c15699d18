#include "scripting/reg_exp_matches.h"

#include "automation/error.h"
#include "automation/interrupt.h"
#include "automation/member.h"

namespace tabrixdb::scripting {

namespace {

// Walks anything with count() and item().
template <class List>
class ItemEnumerator final : public Enumerator {
public:
    explicit ItemEnumerator(List& list) : list_(&list) {}

    bool next(Variant& item) override {
        if (at_ == list_->count())
            return false;
        item = list_->item(at_++);
        return true;
    }

private:
    Ref<List> list_;
    std::int32_t at_ = 0;
};

class SubMatches final : public Object {
public:
    SubMatches(Ref<Matches> matches, std::size_t match) : matches_(std::move(matches)), match_(match) {}

    const ClassInfo& class_info() const override {
        static const ClassInfo info("ISubMatches", "",
                                    {property<&SubMatches::count>("Count"),
                                     property<&SubMatches::item>("Item", {"Index"}).as_default()});
        return info;
    }

    std::unique_ptr<Enumerator> enumerate() override {
        return std::make_unique<ItemEnumerator<SubMatches>>(*this);
    }

    std::int32_t count() const { return matches_->groups(); }

    Variant item(std::int32_t index) const {
        if (index < 0 || index >= count())
            throw Error(kErrorSubscript);
        return matches_->value(match_, static_cast<std::size_t>(index) + 1);
    }

private:
    Ref<Matches> matches_;
    std::size_t match_;
};

class Match final : public Object {
public:
    Match(Ref<Matches> matches, std::size_t match) : matches_(std::move(matches)), match_(match) {}

    const ClassInfo& class_info() const override {
        static const ClassInfo info(
            "IMatch2", "",
            {property<&Match::value>("Value").as_default(), property<&Match::first_index>("FirstIndex"),
             property<&Match::length>("Length"), property<&Match::sub_matches>("SubMatches")});
        return info;
    }

private:
    Variant value() const { return matches_->value(match_, 0); }

    std::int32_t first_index() const { return matches_->first_unit(match_); }

    std::int32_t length() const { return static_cast<std::int32_t>(value().text().units()); }

    Ref<Object> sub_matches() { return make_ref<SubMatches>(matches_, match_); }

    Ref<Matches> matches_;
    std::size_t match_;
};

} // namespace

Matches::Matches(const Text& text, PatternSearch& search, bool all)
    : text_(text),
      stride_(search.parts().size()) {
    const std::string_view whole = text_.view();
    const bool is_ascii = text_.ascii();
    std::size_t counted = 0; // bytes
    std::size_t units = 0;
    const std::size_t bytes = stride_ * sizeof(PatternSearch::Part) + sizeof(std::int32_t);
    while (search.next()) {
        if (!Interrupt::hold(bytes)) {
            Interrupt::let_go(held_bytes_);
            throw Error(7);
        }
        held_bytes_ += bytes;
        parts_.insert(parts_.end(), search.parts().begin(), search.parts().end());
        const std::size_t begin = search.parts().front().begin;
        units += is_ascii ? begin - counted : utf16_length(whole.substr(counted, begin - counted));
        counted = begin;
        first_units_.push_back(static_cast<std::int32_t>(units));
        if (!all)
            break;
    }
}

Matches::~Matches() {
    Interrupt::let_go(held_bytes_);
}

const ClassInfo& Matches::class_info() const {
    static const ClassInfo info(
        "IMatchCollection2", "",
        {property<&Matches::count>("Count"), property<&Matches::item>("Item", {"Index"}).as_default()});
    return info;
}

std::unique_ptr<Enumerator> Matches::enumerate() {
    return std::make_unique<ItemEnumerator<Matches>>(*this);
}

Variant Matches::item(std::int32_t index) {
    if (index < 0 || index >= count())
        throw Error(kErrorSubscript);
    return Variant(Ref<Object>(make_ref<Match>(Ref<Matches>(this), static_cast<std::size_t>(index))));
}

Variant Matches::value(std::size_t match, std::size_t part) const {
    const PatternSearch::Part& found = parts_[match * stride_ + part];
    return found.exists() ? Variant(Text(text_.view().substr(found.begin, found.end - found.begin)))
                          : Variant();
}

} // namespace tabrixdb::scripting
