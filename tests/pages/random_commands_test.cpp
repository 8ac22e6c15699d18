// Hundreds of random commands of one user, while others change the table too, beside a model of the table and
// the grid in its plainest form. After each command page and database are as the model has them.

#include "tests/pages/browser.h"

#include <algorithm>
#include <optional>
#include <random>
#include <vector>

namespace {

using namespace tabrixdb;
using namespace tabrixdb::testing_pages;

struct Person {
    int id = 0;
    std::string name, age;
    bool operator==(const Person&) const = default;
};

struct Typed {
    std::string name, age;
};

// What the grid of edit.asp does, with all records in one list.
class Model {
public:
    std::vector<Person> people;
    std::vector<Person> shown; // the page that the user sees
    std::optional<int> edited; // a row of it
    Person base;               // its record as it was when the user began, or was told
    Typed typed;               // in that row
    bool adds = false, refused = false;
    std::string sort; // "", "ASC" or "DESC" by name
    std::size_t page = 1, size = 3;

    void turn(const std::string& command) {
        edited.reset();
        const std::size_t pages_now = pages();
        page = std::min(page, pages_now);
        if (command == "next_page")
            page = std::min(page + 1, pages_now);
        else if (command == "previous_page")
            page = page > 1 ? page - 1 : page;
        else if (command == "first_page")
            page = 1;
        else if (command == "last_page")
            page = pages_now;
    }

    void resize(const std::string& command) {
        edited.reset();
        if (command == "row+")
            size += 5;
        else if (size > 5)
            size -= 5;
    }

    void edit(int row) {
        if (edited == row)
            return keep_edited();
        edited.reset();
        const auto found = find(shown_row(row).id);
        refused = found == people.end();
        if (!refused)
            follow(*found, *found, {found->name, found->age});
    }

    void update(const Typed& values) {
        const auto found = find(base.id);
        edited.reset();
        refused = found == people.end() || *found != base || !is_valid(values);
        if (found == people.end())
            return;
        if (refused) // the user has been told what the record holds now
            return follow(*found, *found, values);
        found->name = values.name;
        found->age = values.age;
    }

    void remove(int row) {
        const Person before = edited == row ? base : shown_row(row);
        const auto found = find(before.id);
        refused = found == people.end() || *found != before;
        // What stood in an edited row that was told of is typed over the record as it is now.
        if (refused && edited == row && found != people.end())
            base = *found;
        if (!refused)
            people.erase(found);
    }

    // After a command that leaves the edited row in edit: where it is now, or not there any more.
    void keep_edited() {
        if (!edited)
            return;
        const auto found = find(base.id);
        edited.reset();
        if (found == people.end())
            refused = true;
        else
            follow(base, *found, typed);
    }

    void add(const Typed& values) {
        refused = adds = !is_valid(values);
        if (refused)
            return;
        int id = 0;
        for (const Person& person : people)
            id = std::max(id, person.id);
        people.push_back({id + 1, values.name, values.age.empty() ? "18" : values.age});
    }

    // The records in the grid's order.
    std::vector<Person> ordered() const {
        std::vector<Person> all = people;
        std::ranges::sort(all, {}, &Person::id);
        if (!sort.empty())
            std::ranges::sort(all, {}, &Person::name);
        if (sort == "DESC")
            std::ranges::reverse(all);
        return all;
    }

    // Shows the page, as the grid writes it.
    std::string show(const Typed& added) {
        if (page == 0 && !people.empty())
            page = 1;
        page = std::min(page, pages());
        const std::vector<Person> all = ordered();
        shown.clear();
        for (std::size_t i = page > 0 ? (page - 1) * size : 0; i < all.size() && shown.size() < size; ++i)
            shown.push_back(all[i]);
        std::string text =
            std::to_string(page) + "/" + std::to_string(pages()) + " " + std::to_string(all.size()) + "{E}";
        if (adds)
            text += "[ <name=" + added.name + "> <age=" + added.age + "> <born=>{u}{c}]";
        for (std::size_t i = 0; i < shown.size(); ++i)
            text += row_text(i);
        return text;
    }

private:
    std::size_t pages() const { return (people.size() + size - 1) / size; }

    Person shown_row(int row) const { return shown[static_cast<std::size_t>(row)]; }

    std::vector<Person>::iterator find(int id) { return std::ranges::find(people, id, &Person::id); }

    static bool is_valid(const Typed& values) {
        return !values.name.empty() && values.name.size() <= 12 && values.age != "x" && values.age != "200";
    }

    // A record that is edited, or stays so, is shown where it is now.
    void follow(const Person& from, const Person& person, const Typed& values) {
        const std::vector<Person> all = ordered();
        const auto index =
            static_cast<std::size_t>(std::ranges::find(all, person.id, &Person::id) - all.begin());
        page = index / size + 1;
        edited = static_cast<int>(index % size);
        base = from;
        typed = values;
    }

    std::string row_text(std::size_t i) const {
        const Person& person = shown[i];
        const std::string place = std::to_string(i + 1), id = "[" + std::to_string(person.id) + " ";
        if (edited != static_cast<int>(i))
            return id + person.name + " " + person.age + " {e}]";
        return id + "<name_" + place + "=" + typed.name + "> <age_" + place + "=" + typed.age + "> <born_" +
               place + "=>{u}{c}]";
    }
};

class RandomCommands : public testing::TestWithParam<unsigned> {
protected:
    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }

    template <class... Texts>
    std::string one_of(Texts... texts) {
        const std::string all[] = {texts...};
        return all[below(sizeof...(texts))];
    }

    Typed random_values() {
        Typed values{one_of("A", "B", "C", "D") + std::to_string(below(1000)), one_of("", "1", "20", "33")};
        if (below(4) == 0)
            (below(2) == 0 ? values.age : values.name) = one_of("x", "200", "", "too long a name");
        if (values.name == "x" || values.name == "200" || values.age == "too long a name")
            values = {"", "x"};
        return values;
    }

    std::mt19937 random_{GetParam()};
};

TEST_P(RandomCommands, AgreeWithTheModel) {
    const SiteCopy copy;
    copy.query("delete from people");
    asp::Site site(copy.root(), {}, [](std::string_view) {});
    Browser browser(site);
    Model model;
    Typed added{"", "18"};
    int changed_elsewhere = 0;

    browser.ask("/edit.asp", "");
    for (int i = 0; i < 300; ++i) {
        std::string form;
        const auto command = [&](const std::string& word, const std::string& parameters) {
            form = "g_command=" + word + "&g_params=" + parameters + "&g_shown=@";
            // A browser posts what stands in the row that is edited.
            if (model.edited)
                form += "&name_" + std::to_string(*model.edited + 1) + "=" + model.typed.name + "&age_" +
                        std::to_string(*model.edited + 1) + "=" + model.typed.age;
        };
        if (!model.people.empty() && below(6) == 0) { // somebody else
            Person& person =
                model.people[static_cast<std::size_t>(below(static_cast<int>(model.people.size())))];
            if (below(2) == 0) {
                person.name = "E" + std::to_string(++changed_elsewhere);
                copy.query("update people set name = '" + person.name +
                           "' where id = " + std::to_string(person.id));
            } else {
                copy.query("delete from people where id = " + std::to_string(person.id));
                std::erase(model.people, Person(person));
            }
        }
        model.refused = model.adds = false;
        const int rows = static_cast<int>(model.shown.size());
        const int row = rows > 0 ? below(rows) : 0;
        const int kind = below(10);
        if (kind < 3 || rows == 0) {
            const Typed values = random_values();
            command("edit_source", "g;addnew");
            form += "&name=" + values.name + "&age=" + values.age + "&born=";
            model.add(values);
            model.keep_edited();
            added = values;
        } else if (kind == 3) {
            const std::string word = one_of("next_page", "previous_page", "first_page", "last_page");
            command(word, "");
            model.turn(word);
        } else if (kind == 4) {
            const std::string word = one_of("row%2B", "row-");
            command(word, "");
            model.resize(word == "row-" ? word : "row+");
        } else if (kind == 5) {
            model.sort = one_of("ASC", "DESC");
            command("sort", "g;[name]+" + model.sort);
            model.edited.reset();
        } else if (kind == 6) {
            command("edit_grid", "g;delete;" + std::to_string(row));
            model.remove(row);
            model.keep_edited();
        } else if (model.edited && kind < 9) {
            model.typed = random_values();
            command("edit_grid", "g;update;" + std::to_string(*model.edited));
            model.update(Typed(model.typed));
        } else {
            const bool cancels = model.edited && below(2) == 0;
            const int of = cancels ? *model.edited : row;
            command("edit_grid", "g;" + std::string(cancels ? "cancel;" : "edit;") + std::to_string(of));
            cancels ? model.edited.reset() : model.edit(of);
        }
        SCOPED_TRACE(std::to_string(i) + ": " + form);
        const std::string& body = browser.ask("/edit.asp", form);
        const std::string expected = model.show(added);
        ASSERT_NE(body.find(expected), std::string::npos) << expected << "\nis not in\n" << body;
        ASSERT_EQ(body.find(expected) > 2, model.refused) << body;
        std::string held;
        std::ranges::sort(model.people, {}, &Person::id);
        for (const Person& person : model.people)
            held +=
                (held.empty() ? "" : " ") + std::to_string(person.id) + "|" + person.name + "|" + person.age;
        ASSERT_EQ(copy.query("select id, name, coalesce(age, '') from people order by id"), held);
    }
}

TEST(HostileForm, SaysThatItShowedMoreRowsThanThereCanBe) {
    const SiteCopy copy;
    asp::Site site(copy.root(), {}, [](std::string_view) {});
    std::string form = "g_command=edit_source&g_params=g;update&g_shown=1";
    for (int i = 0; i < 40000; ++i)
        form += "|,0,0";
    Browser browser(site);
    const std::string& body = browser.ask("/edit.asp", form);
    EXPECT_NE(body.find("1/2 5{E}[1 Ann"), std::string::npos) << body;
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomCommands, testing::Values(1u, 2u, 3u));

} // namespace
