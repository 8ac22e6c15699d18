#pragma once

#include "automation/array.h"
#include "automation/error.h"
#include "vbscript/chunk_stack.h"
#include "vbscript/err_object.h"
#include "vbscript/library.h"
#include "vbscript/machine.h"
#include "vbscript/program.h"

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::vbscript {

struct LoadedUnit;
struct Frame;
class Instance;

// What a global name of a machine is. Its address never changes.
struct Global {
    enum class Kind : std::uint8_t {
        Undefined,
        Variable,
        Constant,
        Object, // of the host
        Procedure,
        Class,
        Member, // of the object that is the value
        Library,
        CreateObject, // the functions that need the machine itself
        Eval,
        Execute,
        ExecuteGlobal,
        GetRef,
    };

    bool is_readable() const noexcept {
        return kind == Kind::Variable || kind == Kind::Constant || kind == Kind::Object;
    }

    Kind kind = Kind::Undefined;
    Variant value;
    LoadedUnit* unit = nullptr;
    const Procedure* procedure = nullptr;
    const Class* declared = nullptr;
    const LibraryFunction* library = nullptr;
    int member = -1;
};

// A name that a unit uses, found in this machine. For Eval `value` may be a local of the caller.
struct Link {
    Global* global = nullptr;
    Variant* value = nullptr;
};

// The member that a call found the last time, valid for objects of the same class.
struct MemberCache {
    const void* key = nullptr;
    int member = -1;
    bool of_script = false; // the object is an Instance
};

// A program as this machine holds it.
struct LoadedUnit {
    std::shared_ptr<const Program> program;
    std::vector<Link> links;
    std::vector<MemberCache> caches;
    std::vector<const void*> class_keys; // Object::dispatch_key of their objects
    Frame* scope = nullptr;              // of Eval and Execute: the procedure they run in
    std::deque<Global> borrowed;         // stands for names of the scope, and for variables of its own
};

// A procedure at work.
struct Frame {
    LoadedUnit* unit = nullptr;
    const Procedure* procedure = nullptr;
    Variant* slots = nullptr;
    Variant** references = nullptr;
    Variant* fields = nullptr; // of a method's object, which is in its first slot
    std::uint32_t slot_count = 0;
    const Instruction* at = nullptr; // being carried out
    Operand result;                  // in the caller's frame
    bool resume_next = false;
    bool has_names = false; // in State::names_of_frames_
    bool is_base = false;   // called from C++: the result goes to returned_
    ChunkStack<Variant>::Mark slot_mark;
    ChunkStack<Variant*>::Mark reference_mark;

    Variant& operator[](Operand operand) const noexcept {
        switch (operand.kind()) {
        case Operand::Kind::Reference:
            return *references[operand.index()];
        case Operand::Kind::Field:
            return fields[operand.index()];
        case Operand::Kind::Global:
            return *unit->links[operand.index()].value;
        case Operand::Kind::Constant: // read only: whoever writes has an operand of another kind
            return const_cast<Variant&>(unit->program->constants[operand.index()]);
        default:
            return slots[operand.index()];
        }
    }

    const Operand* list(Operand first) const noexcept {
        return unit->program->operands.data() + first.number();
    }

    std::uint32_t code_index() const noexcept {
        return static_cast<std::uint32_t>(at - unit->program->code.data());
    }
};

// The inside of a Machine. Names and units are in machine.cpp, the instructions in interpreter.cpp, calls in
// machine_calls.cpp, elements and members in machine_members.cpp, loops in machine_loops.cpp.
class Machine::State : public std::enable_shared_from_this<State> {
public:
    State(Environment& environment, Interrupt& interrupt, Limits limits);
    ~State();

    Outcome run(std::shared_ptr<const Program> program);
    std::optional<Variant> call(std::string_view procedure, Arguments arguments);
    const Global* procedure(std::string_view name) const;
    Variant eval(std::string_view expression, const ExpressionVariables& variables);
    void add_object(std::string_view name, Ref<Object> object, bool members);

    bool is_running() const noexcept { return !frames_.empty(); }

    std::optional<Whereabouts> whereabouts() const;

    // --- For the objects of its classes
    void enlist(Instance& instance) noexcept;
    void dismiss(Instance& instance) noexcept;
    // Runs Class_Terminate when the instruction at work is done.
    void terminate_later(Ref<Instance> instance);
    Variant call_method(Instance& instance, const Procedure& procedure, Arguments arguments);
    // For what GetRef gave.
    Variant call_referred(const Global& procedure, Arguments arguments);
    // Lets go of all names, and of what the objects that are left hold.
    void close() noexcept;

private:
    // What a global name takes in memory, about: pages may make them without end.
    static constexpr std::size_t kBytesOfName = 200;

    // --- Names and units
    Global& global(std::string_view name);
    void resolve(Global& global, std::string_view name);
    LoadedUnit& load(std::shared_ptr<const Program> program);
    void unload(const LoadedUnit& unit) noexcept;
    std::unique_ptr<LoadedUnit> link(std::shared_ptr<const Program> program, Frame* scope,
                                     const ExpressionVariables& variables);
    void declare_names(LoadedUnit& unit);
    void declare_procedures(LoadedUnit& unit);

    // --- Code that comes as text
    enum class Code : char { Expression = '=', Statements = ':' };
    using Names = std::unordered_map<std::string, Global, IgnoreCaseHash, IgnoreCaseEqual>;

    std::shared_ptr<const Program> compiled(Code kind, std::string_view text);
    // In the procedure at work, or, without one, among the global names.
    static Frame* scope_of(Frame& frame) noexcept;
    Variant evaluate(std::string_view expression, Frame* scope, const ExpressionVariables& variables);
    static bool lend(LoadedUnit& unit, const ExpressionVariables& variables, std::string_view name);
    void execute_text(std::string_view statements, Frame* scope);
    bool borrow(LoadedUnit& unit, Frame& scope, const Program::Link& wanted);
    Global* name_in_frame(Frame& scope, const Program::Link& wanted);
    Variant call_text_function(Frame& frame, Global::Kind kind, const Operand* list, std::size_t count,
                               const std::string& name);
    Variant reference_to(std::string_view procedure);

    // --- Running
    // Runs one procedure from C++; nullopt when the run was stopped.
    std::optional<Variant> execute(LoadedUnit& unit, const Procedure& procedure, Arguments arguments,
                                   Instance* me = nullptr);
    bool run_frames(std::size_t base);
    bool interpret(std::size_t base);
    // `copies`: more slots behind the procedure's own.
    Frame& push_frame(LoadedUnit& unit, const Procedure& procedure, Operand result, Instance* me,
                      std::size_t copies = 0);
    void pop_frame();
    void return_from_frame();
    void unwind(std::size_t base);
    bool hold(const Error& error, std::size_t base);
    bool must_stop() noexcept;

    // --- Calls
    // What calls do returns true when it pushed a frame: then the result comes later.
    bool get_name(Frame& frame, const Instruction& instruction);
    void bind_name(Frame& frame, const Instruction& instruction);
    bool bind_argument(Frame& frame, const Instruction& instruction);
    bool call_name(Frame& frame, const Instruction& instruction);
    bool call_link(Frame& frame, const Instruction& instruction, Operand result, const Operand* list,
                   std::size_t count, Operand local);
    // `value`: assigned to a property, its last argument.
    void call_procedure(Frame& frame, LoadedUnit& unit, const Procedure& procedure, Operand result,
                        const Operand* list, std::size_t count, Instance* me = nullptr,
                        Variant* value = nullptr);
    void call_own_method(Frame& frame, const Instruction& instruction);
    bool new_object(Frame& frame, const Instruction& instruction);
    void run_terminations();
    void release_instances() noexcept;
    Variant call_global_member(Frame& frame, const Global& global, const Operand* list, std::size_t count,
                               const std::string& name);
    Variant call_library(Frame& frame, const LibraryFunction& function, const Operand* list,
                         std::size_t count);
    Variant create_object(Frame& frame, const Operand* list, std::size_t count);
    [[noreturn]] void raise_undefined(const Frame& frame, std::string_view name,
                                      std::int32_t otherwise) const;

    // --- Members and elements
    bool get_member(Frame& frame, const Instruction& instruction);
    bool store_member(Frame& frame, const Instruction& instruction);
    const MemberCache& find_member(Frame& frame, Object& object, const Operand* site);
    Instance* own_instance(const MemberCache& found, Object& object) const noexcept;
    Variant invoke(Frame& frame, Object& object, int member, Access access, const Operand* site,
                   Arguments arguments);
    void index(Frame& frame, const Instruction& instruction);
    Variant element(Frame& frame, const Variant& holder, const Operand* list, std::size_t count,
                    const std::string& name);
    void store_element(Frame& frame, const Instruction& instruction);
    void write_back(Frame& frame, const Instruction& instruction);
    void redim(Frame& frame, const Instruction& instruction);
    void dim_array(Frame& frame, const Instruction& instruction);
    void erase(Frame& frame, const Instruction& instruction);
    void let(Frame& frame, const Instruction& instruction);
    void set(Frame& frame, const Instruction& instruction);

    // --- Loops and text
    bool for_start(Frame& frame, const Instruction& instruction);
    bool for_next(Frame& frame, const Instruction& instruction);
    bool for_each_start(Frame& frame, const Instruction& instruction);
    bool for_each_next(Frame& frame, const Instruction& instruction);
    void with_start(Frame& frame, const Instruction& instruction);
    void concatenate(Frame& frame, const Instruction& instruction);
    void append(Frame& frame, const Instruction& instruction);
    Text join(const Frame& frame, const Operand* list, std::size_t count);

    Environment& environment_;
    Interrupt& interrupt_;
    Limits limits_;
    std::uint64_t steps_ = 0;
    Ref<ErrObject> err_;
    Names globals_;
    std::size_t held_bytes_ = 0; // counted by the Interrupt: of names and units
    std::unordered_map<const Program*, std::unique_ptr<LoadedUnit>> units_;
    std::unordered_map<std::string, std::shared_ptr<const Program>> kept_code_; // by Code and text
    std::vector<Ref<Object>> member_holders_;                                   // see add_object
    std::deque<Frame> frames_;                                                  // a Frame stays where it is
    std::unordered_map<const Frame*, Names> names_of_frames_;                   // that Execute declared there
    Instance* instances_ = nullptr;                                             // all that live, linked
    std::deque<Ref<Instance>> dying_;
    std::vector<Global*> names_in_order_;
    ChunkStack<Variant> slots_;
    ChunkStack<Variant*> references_;
    Variant returned_;
    std::string scratch_; // text being joined
};

// Keys for the objects of so many classes, as no other class has them or had them.
std::vector<const void*> new_class_keys(std::size_t count);

// An error with the name that it is about, as messages show it.
Error named_error(std::int32_t number, std::string_view name);
[[noreturn]] void raise_named(std::int32_t number, std::string_view name);
// The name of a variable, or a description of a value, for messages.
std::string name_of(const Frame& frame, Operand operand);
std::string describe(const Variant& value);

} // namespace tabrixdb::vbscript
