#include "ado/fields.h"

#include "automation/member.h"

#include <limits>

namespace tabrixdb::ado {

namespace {

namespace type = platform::data_type;

// What DefinedSize says of a text or binary column without a bound.
constexpr std::int32_t kUnboundText = 1073741823;
constexpr std::int32_t kUnboundBytes = std::numeric_limits<std::int32_t>::max();

// What Precision and NumericScale say where there is none.
constexpr std::int32_t kNoPrecision = 255;

class FieldEnumerator final : public Enumerator {
public:
    explicit FieldEnumerator(Ref<Fields> fields) : fields_(std::move(fields)) {}

    bool next(Variant& item) override {
        if (at_ >= fields_->count())
            return false;
        item = Variant(fields_->item(Variant(at_++)));
        return true;
    }

private:
    Ref<Fields> fields_;
    std::int32_t at_ = 0;
};

} // namespace

// --- Field ---------------------------------------------------------------------------------------------

const ClassInfo& Field::class_info() const {
    static const ClassInfo info("Field", "",
                                {
                                    property<&Field::value, &Field::set_value>("Value").as_default(),
                                    property<&Field::name>("Name"),
                                    property<&Field::type>("Type"),
                                    property<&Field::attributes>("Attributes"),
                                    property<&Field::defined_size>("DefinedSize"),
                                    property<&Field::actual_size>("ActualSize"),
                                    property<&Field::precision>("Precision"),
                                    property<&Field::numeric_scale>("NumericScale"),
                                    property<&Field::original_value>("OriginalValue"),
                                    property<&Field::original_value>("UnderlyingValue"),
                                    method<&Field::get_chunk>("GetChunk", {"Length"}),
                                    method<&Field::append_chunk>("AppendChunk", {"Data"}),
                                });
    return info;
}

void Field::set_value(const Variant& value) {
    result_->set_value(column_, value);
}

std::int32_t Field::defined_size() {
    const platform::Column& column = info().column;
    if (column.defined_size != 0)
        return column.defined_size;
    switch (column.type) {
    case type::kBinary:
    case type::kVarBinary:
    case type::kLongVarBinary:
        return kUnboundBytes;
    default:
        return kUnboundText;
    }
}

std::int32_t Field::precision() {
    const std::int32_t digits = info().precision;
    return digits ? digits : kNoPrecision;
}

std::int32_t Field::numeric_scale() {
    return info().column.type == type::kNumeric || info().column.type == type::kCurrency ? info().scale
                                                                                         : kNoPrecision;
}

Variant Field::get_chunk(std::int32_t size) {
    return result_->get_chunk(column_, size);
}

void Field::append_chunk(const Variant& chunk) {
    result_->append_chunk(column_, chunk);
}

// --- Fields --------------------------------------------------------------------------------------------

Fields::Fields(Ref<Result> result) : result_(std::move(result)) {
    const std::size_t count = result_->infos().size();
    fields_.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        fields_.push_back(make_ref<Field>(result_, i));
}

const ClassInfo& Fields::class_info() const {
    static const ClassInfo info("Fields", "",
                                {
                                    property<&Fields::item>("Item", {"Index"}).as_default(),
                                    property<&Fields::count>("Count"),
                                });
    return info;
}

std::unique_ptr<Enumerator> Fields::enumerate() {
    return std::make_unique<FieldEnumerator>(Ref<Fields>(this));
}

Ref<Field> Fields::item(const Variant& name_or_position) {
    const Variant key = name_or_position.is_object() ? value_of(name_or_position) : name_or_position;
    return fields_[key.is_string() ? result_->column(key.text().view()) : result_->column(to_long(key))];
}

} // namespace tabrixdb::ado
