#include "ado/error_objects.h"

#include "automation/member.h"

namespace tabrixdb::ado {

namespace {

class ErrorEnumerator final : public Enumerator {
public:
    explicit ErrorEnumerator(Ref<Errors> errors) : errors_(std::move(errors)) {}

    bool next(Variant& item) override {
        if (at_ >= errors_->count())
            return false;
        item = Variant(errors_->item(at_++));
        return true;
    }

private:
    Ref<Errors> errors_;
    std::int32_t at_ = 0;
};

} // namespace

const ClassInfo& ErrorObject::class_info() const {
    static const ClassInfo info("Error", "",
                                {
                                    property<&ErrorObject::description>("Description").as_default(),
                                    property<&ErrorObject::number>("Number"),
                                    property<&ErrorObject::native_error>("NativeError"),
                                    property<&ErrorObject::source>("Source"),
                                    property<&ErrorObject::sql_state>("SQLState"),
                                });
    return info;
}

const ClassInfo& Errors::class_info() const {
    static const ClassInfo info("Errors", "",
                                {
                                    property<&Errors::item>("Item", {"Index"}).as_default(),
                                    property<&Errors::count>("Count"),
                                    method<&Errors::clear>("Clear"),
                                });
    return info;
}

std::unique_ptr<Enumerator> Errors::enumerate() {
    return std::make_unique<ErrorEnumerator>(Ref<Errors>(this));
}

Ref<ErrorObject> Errors::item(std::int32_t position) {
    if (position < 0 || position >= count())
        throw error(Code::ItemNotFound, kConnectionSource);
    return make_ref<ErrorObject>(records_[static_cast<std::size_t>(position)]);
}

} // namespace tabrixdb::ado
