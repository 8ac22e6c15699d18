#include "automation/variant.h"

#include "automation/array.h"
#include "automation/object.h"

namespace tabrixdb {

Variant::Variant(Ref<Object> object) noexcept : type_(Type::Object) {
    object_ = object.get();
    if (object_)
        object_->add_ref();
}

Variant::Variant(Ref<Array> array) noexcept : type_(Type::VariantArray) {
    array_ = array.get();
    array_->add_ref();
}

Variant Variant::nothing() noexcept {
    return Variant(Ref<Object>());
}

Variant Variant::byte_array(std::string_view bytes) {
    Variant value(Text::bytes(bytes));
    value.type_ = Type::ByteArray;
    return value;
}

Variant Variant::integer(std::int64_t value) noexcept {
    if (value >= INT16_MIN && value <= INT16_MAX)
        return Variant(static_cast<std::int16_t>(value));
    if (value >= INT32_MIN && value <= INT32_MAX)
        return Variant(static_cast<std::int32_t>(value));
    return Variant(static_cast<double>(value));
}

bool Variant::is_number() const noexcept {
    return is_whole() || type_ == Type::Single || type_ == Type::Double || type_ == Type::Currency;
}

Array& Variant::unique_array() {
    if (array_->references() > 1)
        *this = Variant(Array::clone(*array_));
    return *array_;
}

void Variant::copy_shared(const Variant& other) noexcept {
    type_ = other.type_;
    switch (type_) {
    case Type::Object:
        object_ = other.object_;
        if (object_)
            object_->add_ref();
        break;
    case Type::VariantArray:
        array_ = other.array_;
        array_->add_ref();
        break;
    default:
        new (&text_) Text(other.text_);
    }
}

void Variant::take_shared(Variant& other) noexcept {
    type_ = std::exchange(other.type_, Type::Empty);
    switch (type_) {
    case Type::Object:
        object_ = other.object_;
        break;
    case Type::VariantArray:
        array_ = other.array_;
        break;
    default:
        new (&text_) Text(std::move(other.text_));
        other.text_.~Text();
    }
    other.integer_ = 0;
}

void Variant::clear_shared() noexcept {
    // The slot is emptied first: a destructor that runs here may look at the variable that held it.
    const Type type = std::exchange(type_, Type::Empty);
    if (type == Type::Object) {
        if (Object* object = std::exchange(object_, nullptr))
            object->release();
    } else if (type == Type::VariantArray) {
        std::exchange(array_, nullptr)->release();
    } else {
        text_.~Text();
        integer_ = 0;
    }
}

bool identical(const Variant& a, const Variant& b) noexcept {
    if (a.type() != b.type())
        return false;
    switch (a.type()) {
    case Type::Empty:
    case Type::Null:
        return true;
    case Type::Boolean:
        return a.boolean() == b.boolean();
    case Type::String:
    case Type::ByteArray:
        return a.text() == b.text();
    case Type::Object:
        return a.object() == b.object();
    case Type::VariantArray:
        return a.array() == b.array();
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return a.real() == b.real();
    default:
        return a.whole() == b.whole();
    }
}

} // namespace tabrixdb
