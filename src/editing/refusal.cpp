#include "editing/refusal.h"

#include "engine/report.h"

namespace tabrixdb {

namespace {

// A caption is HTML already.
std::string caption_of(const DbField& field) {
    return field.caption.empty() ? html_encode(field.name) : field.caption;
}

std::string item(const DbField& field, std::string_view value) {
    return "<li>" + caption_of(field) + ": " + html_encode(value) + "</li>";
}

// "<ul>" with an item for each posted value, as `show` makes it; nothing when there is none.
template <class Show>
std::string list_of(const DbSource& source, const PostedForm& form, std::int16_t row, Show show) {
    std::string items;
    const auto& columns = source.records().columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (const auto posted = form.value(i, row))
            items += show(i, source.field_of(columns[i].name), *posted);
    return items.empty() ? "" : "<ul>" + items + "</ul>";
}

} // namespace

std::string typed_values(const DbSource& source, const PostedForm& form, std::int16_t row) {
    return list_of(source, form, row, [](std::size_t, const DbField& field, const std::string& posted) {
        return item(field, posted);
    });
}

Refusal changed_meanwhile(const DbSource& source, const PostedForm& form, std::int16_t row,
                          std::string_view done) {
    const std::string differences =
        list_of(source, form, row, [&](std::size_t i, const DbField& field, const std::string& posted) {
            std::string held;
            source.records().append_value(i, held);
            return form.is_unchanged(i, posted) ? "" : item(field, held);
        });
    return {.message = "Nothing was " + std::string(done) +
                       ": somebody else has changed this record since it was shown." +
                       (differences.empty() ? "" : " It holds now:" + differences),
            .told_row = row};
}

Refusal gone_meanwhile(const DbSource& source, const PostedForm& form, std::int16_t row) {
    const std::string typed = typed_values(source, form, row);
    return {.message = "This record is no longer among those shown here." +
                       (typed.empty() ? std::string() : " What you had typed:" + typed),
            .record_gone = true,
            .told_row = row};
}

std::string typed_elsewhere(const DbSource& source, const PostedForm& form, std::int16_t row) {
    const std::string typed = typed_values(source, form, row);
    return typed.empty() ? "" : "What you had typed for a record that is on another page now:" + typed;
}

Refusal unknown_control(const DbField& field) {
    return {.message = "Nothing was saved: the page has changed since this form was shown. " +
                       caption_of(field) + " can't be saved by it."};
}

Refusal bad_value(const DbField& field, std::string_view why, std::string_view more) {
    return {.message =
                "Nothing was saved. " + caption_of(field) + ": " + html_encode(why) + std::string(more)};
}

Refusal not_written(std::string_view why, std::string_view done) {
    return {.message = "Nothing was " + std::string(done) + ": " + html_encode(why)};
}

} // namespace tabrixdb
