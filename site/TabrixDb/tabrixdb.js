/*
 * TabrixDb's functions in the browser. The links that the engine writes into grids call them:
 *
 *   javascript:grid_navigate('orders','next_page')
 *
 * Each function puts a command and its parameters into the hidden fields of one form and posts the form
 * to the page it stands on. The form of a grid or of a filter has the grid's or the source's name, and three fields:
 *
 *   <name>_command   the command word
 *   <name>_params    its parameters; where there are several, separated by ";"
 *   <name>_anchor    where the next page shall be shown, "#tabrixdb" unless the page says otherwise
 *
 * A grid stands between two anchors, <name>_start and <name>_end. A grid in a row of another grid has the same fields
 * and anchors; as HTML has no form inside a form, it gets one here.
 *
 * Load it once in a page: <script src="/TabrixDb/tabrixdb.js"></script>
 * The calendar and the dialog of uploads are files beside it, which it loads when they are wanted.
 */
(() => {
    'use strict';

    const HERE = document.currentScript?.src ?? location.href;
    const part = (file) => import(new URL(file, HERE).href).catch((error) => {
        alert('This can not be opened at the moment. Please try again.');
        throw error;
    });

    // --- The forms of grids and filters ------------------------------------------------------------------------

    const hiddenField = (name, suffix) => document.querySelector(`input[name="${CSS.escape(`${name}_${suffix}`)}"]`);

    // Attributes, because a field of the form may be called "name" or "id" and hide the form's own property.
    const nameOf = (form) => form?.getAttribute('name') ?? '';

    /** A page may also have the fields in a form without a name, with a button of its own. */
    function isGrid(name) {
        const command = name && hiddenField(name, 'command');
        return Boolean(command && hiddenField(name, 'params')
            && (nameOf(command.form) === name || document.getElementsByName(`${name}_end`).length));
    }

    function allForms() {
        const names = [...document.querySelectorAll('input[name$="_command"]')].map((field) => field.name.slice(0, -'_command'.length));
        return names.filter(isGrid).map(findForm).filter(Boolean);
    }

    /** The form of that name; made when the browser has dropped it because it stood inside another. */
    function ownForm(name) {
        let form = document.querySelector(`form[name="${CSS.escape(name)}"]`);
        if (!form) {
            form = element('form', { method: 'post', hidden: true });
            form.setAttribute('name', name);
            document.body.append(form);
        }
        if (!form.hasAttribute('id')) form.setAttribute('id', `tabrixdb-form-${name}`);
        return form;
    }

    /**
     * Ties every field to the form of the innermost grid between whose anchors it stands. The browser has tied those of
     * a nested grid to the form around them, and an end tag that it met may have cut off fields of the outer one.
     */
    function tieFields() {
        const open = [];
        for (const node of document.querySelectorAll('a[name], input, select, textarea, button')) {
            if (node.matches('a')) {
                const [, name, edge] = node.name.match(/^(.+)_(start|end)$/) ?? [];
                if (!isGrid(name)) continue;
                if (edge === 'end' && open.includes(name)) open.length = open.lastIndexOf(name);
                if (edge === 'start' && document.getElementsByName(`${name}_end`).length) open.push(name);
            } else if (open.length && !node.hasAttribute('form')) {
                const form = ownForm(open.at(-1));
                if (node.form !== form) node.setAttribute('form', form.getAttribute('id'));
            }
        }
    }

    /** The form of a grid or filter, or null with a message to whoever writes the page. */
    function findForm(name) {
        const found = () => isGrid(name) && nameOf(hiddenField(name, 'command').form) === name;
        if (!found()) tieFields();
        if (found()) return hiddenField(name, 'command').form;
        console.error(`TabrixDb: this page has no grid or filter form named "${name}".`);
        return null;
    }

    /** The fields of a form that a user can see, or those of one posted name. */
    function controls(form, name) {
        const fields = [...form.elements].filter((field) => field.matches('input:not([type=hidden]), select, textarea'));
        return name === undefined ? fields : fields.filter((field) => field.name === name);
    }

    /** The same by posted name, for whoever goes through all of a form that may have thousands. */
    function controlsByName(form) {
        const byName = new Map();
        for (const field of controls(form)) byName.set(field.name, [...byName.get(field.name) ?? [], field]);
        return byName;
    }

    // --- Posting a command ----------------------------------------------------------------------------------

    const placeKey = (path) => `tabrixdb:place:${path}`;

    /** The element that an anchor such as "#orders_start" leads to. */
    function anchored(anchor) {
        const name = anchor.replace(/^#/, '');
        return name ? document.getElementById(name) || document.getElementsByName(name)[0] : undefined;
    }

    /** sessionStorage, where the browser allows it: the place on the page is a comfort, not a need. */
    function remember(key, value) {
        try { sessionStorage.setItem(key, JSON.stringify(value)); } catch { /* private mode, or storage is full */ }
    }

    function recall(key) {
        try {
            const value = sessionStorage.getItem(key);
            sessionStorage.removeItem(key);
            return JSON.parse(value);
        } catch {
            return null;
        }
    }

    // What has the focus on the next page: the first field of the grid, or the link with this address.
    const FIRST_FIELD = 'first field';

    /** The link that a keyboard has followed, so that the next page continues there. */
    function linkInUse() {
        return document.activeElement?.matches('a:focus-visible') ? document.activeElement.getAttribute('href') : '';
    }

    /**
     * Posts a command, after a question if there is one, or if something typed would be lost. The next page is shown at the
     * form's anchor if the page has one of that name, and otherwise at the place where this page is now; focus says what has
     * the focus there.
     */
    function post(name, command, params, { anchor = '', focus = linkInUse(), question = '' } = {}) {
        const form = findForm(name);
        if (!form) return;
        const action = params.split(';')[1] ?? '';
        const loses = losesTyping(name, command, action);
        const warning = question ? 'What you have typed and not saved may be lost.' : 'What you have typed is not saved. Go on without it?';
        const asked = [question, loses ? warning : ''].filter(Boolean).join(' ');
        if (asked && !confirm(asked)) return;
        hiddenField(name, 'command').value = command;
        hiddenField(name, 'params').value = params;
        const target = anchor || hiddenField(name, 'anchor')?.value || '';
        const place = anchored(target) ? target : '';
        // Two slashes in front would make the next name a host's.
        form.setAttribute('action', location.pathname.replace(/^\/+/, '/') + location.search + place);
        const keeps = SAVING.includes(action) || KEEPING.includes(`${command} ${action}`);
        rememberPlace(form, keeps, focus, place ? null : { left: scrollX, top: scrollY });
        takeBackFiles();
        // A field of the page may be called "submit" and hide the form's own method.
        HTMLFormElement.prototype.submit.call(form);
    }

    /** Before a form is posted with a command: what the page that comes back has to know. keeps: whether the form's files go with it. */
    function rememberPlace(form, keeps, focus = '', scroll = null) {
        const name = nameOf(form);
        const typed = typedFields(form).map((field) => [field.name, field.value]);
        const files = keeps ? releaseFiles(form) : [];
        const saves = SAVING.includes(hiddenField(name, 'params').value.split(';')[1]);
        const { pathname } = new URL(form.getAttribute('action') ?? '', location.href);
        remember(placeKey(pathname), { name, focus, typed, files, saves, scroll });
    }

    /**
     * A form that a button or a script of the page posts, which is not always seen otherwise: form.submit() has no event of its own.
     * Its files may be saved by the page that it goes to, so they are not taken back. Nothing is known of a post without a command.
     */
    function postedByPage({ target: form }) {
        if (!filesOf(form).length) return; // as after post()
        if (hiddenField(nameOf(form), 'command').value) rememberPlace(form, true);
        else releaseFiles(form);
    }

    /** Goes to what the engine says about a change that it did not make; false when it says nothing. */
    function showMessage(name) {
        const message = hiddenField(name, 'command').parentElement.querySelector(':scope > .tabrixdb-message');
        if (!message) return false;
        message.tabIndex = -1;
        message.focus({ preventScroll: true });
        message.scrollIntoView({ block: 'nearest', behavior: 'instant' });
        return true;
    }

    /** After a command: back to the old place, and make reloading ask for the page instead of posting again. */
    function returnToPlace() {
        const place = recall(placeKey(location.pathname));
        if (place === null) return;
        history.replaceState(history.state, '', location.href);
        if (place.scroll) scrollTo({ ...place.scroll, behavior: 'instant' });
        if (!isGrid(place.name)) return;
        const refused = showMessage(place.name);
        if (refused || !place.saves) keepAsTyped(findForm(place.name), place.typed);
        keepFiles(findForm(place.name), place.files, place.saves && !refused);
        if (refused || !place.focus) return;
        const next = place.focus === FIRST_FIELD ? controls(findForm(place.name))[0]
            : document.querySelector(`a[href="${CSS.escape(place.focus)}"]`);
        next?.focus({ preventScroll: true });
    }

    // --- What was typed ----------------------------------------------------------------------------------------

    // What a page came with is not saved either where it was typed on the page before: refused, or still being edited.
    const broughtAlong = new WeakSet();

    function keepAsTyped(form, typed) {
        const came = new Set(typed.map(([name, value]) => `${name}=${value}`));
        for (const field of controls(form)) if (came.has(`${field.name}=${field.value}`)) broughtAlong.add(field);
    }

    /** Whether a field holds something else than the page came with. */
    function isTyped(field) {
        if (broughtAlong.has(field)) return true;
        if (isCheckable(field)) return field.checked !== field.defaultChecked;
        if (!field.matches('select')) return field.value !== field.defaultValue;
        const options = [...field.options];
        const preset = options.some((option) => option.defaultSelected);
        const first = !preset && !field.multiple; // which the browser has chosen
        return options.some((option, i) => option.selected !== (first ? i === 0 : option.defaultSelected));
    }

    const typedFields = (form) => [...new Set([...controls(form).filter((field) => field.name && isTyped(field)), ...filesOf(form)])];

    const isFilter = (name) => document.querySelector(`a[href^="javascript:filter_source('${CSS.escape(name)}',"]`) !== null;

    /** The row of a grid that is being edited by itself, from 1; 0: none is. */
    function editedRow(grid) {
        const saves = document.querySelector(`a[href^="javascript:edit_grid("][href$="'${CSS.escape(grid)}','update')"]`);
        return saves ? Number(saves.getAttribute('href').match(/\d+/)[0]) + 1 : 0;
    }

    const rowOf = (field) => Number(field.name.match(/_(\d+)$/)?.[1] ?? 0);

    // These show the same rows again, and what was typed in the one that is being edited.
    const KEEPING = ['edit_source add', 'edit_source edit', 'edit_source delete', 'edit_grid delete',
        'grid_offset ', 'filter_grid_source ', 'filter_grid_source_clear '];
    // These save or give up what is in the grid. A row that is saved does not keep a new record beside it.
    const ENDING = ['edit_source update', 'edit_source cancel', 'edit_source canceladd', 'edit_grid cancel'];

    /** Whether a command throws away what was typed in its grid, or in another, whose form is not posted with it. */
    function losesTyping(name, command, action) {
        const words = `${command} ${action}`;
        const row = editedRow(name);
        const inRow = (field) => row !== 0 && rowOf(field) === row;
        const lost = (field) => {
            if (words === 'edit_grid update') return !inRow(field);
            if (words === 'edit_source addnew') return false;
            return !(KEEPING.includes(words) && inRow(field));
        };
        return allForms().some((form) => {
            const own = nameOf(form) === name;
            if (isFilter(nameOf(form)) || (own && ENDING.includes(words))) return false;
            return typedFields(form).some((field) => !own || lost(field));
        });
    }

    // --- Grids -----------------------------------------------------------------------------------------------

    /** command: first_page, previous_page, next_page, last_page, row+ or row-. */
    function grid_navigate(grid, command) {
        post(grid, command, '');
    }

    /** direction: " ASC " or " DESC ". */
    function grid_sort(field, direction, grid) {
        post(grid, 'sort', `${grid};[${field}]${direction}`);
    }

    /** Makes a row of this page (counted from 0) the selected one: forms and grids fed by this grid follow it. */
    function grid_pageoffset(row, grid) {
        post(grid, 'grid_offset', String(row));
    }

    /** From the list to the form that shows one record, and back. */
    function toggle_to_form(grid) {
        post(grid, 'form_mode', '');
    }

    function toggle_to_grid(grid) {
        post(grid, 'grid_mode', '');
    }

    // --- Editing ---------------------------------------------------------------------------------------------

    const SAVING = ['update', 'addnew'];

    const questionOf = (action) => (action === 'delete' ? 'Delete this record?' : '');

    /** True if what an action saves has all that is required. isSaved: of a field, whether it belongs to that. */
    function isComplete(grid, action, isSaved) {
        if (!SAVING.includes(action)) return true;
        const form = findForm(grid);
        return form !== null && verify_form(form, isSaved);
    }

    /** The whole grid. action: edit, update, cancel, add, addnew, canceladd or delete. */
    function edit_source(grid, action) {
        const apart = action === 'addnew' ? editedRow(grid) : 0; // a row that is not saved with the new record
        if (!isComplete(grid, action, (field) => apart === 0 || rowOf(field) !== apart)) return;
        const focus = ['edit', 'add'].includes(action) ? FIRST_FIELD : undefined;
        post(grid, 'edit_source', `${grid};${action}`, { focus, question: questionOf(action) });
    }

    /** The same, but the next page is shown from the start of the grid. */
    function edit_source_onstart(grid, action) {
        if (isComplete(grid, action)) post(grid, 'edit_source', `${grid};${action}`, { anchor: `#${grid}_start`, question: questionOf(action) });
    }

    /** One row of the page, counted from 0. action: edit, update, cancel or delete. */
    function edit_grid(row, grid, action) {
        if (!isComplete(grid, action, (field) => rowOf(field) === row + 1)) return;
        const byKeyboard = document.activeElement?.matches('a:focus-visible, input, select');
        const focus = action === 'edit' ? FIRST_FIELD : byKeyboard ? `javascript:edit_grid(${row}, '${grid}','edit')` : '';
        post(grid, 'edit_grid', `${grid};${action};${row}`, { focus, question: questionOf(action) });
    }

    /** Puts every input back to the value that it came with. */
    function reset_form(grid) {
        const form = findForm(grid);
        if (!form) return;
        HTMLFormElement.prototype.reset.call(form);
        for (const field of filesOf(form)) takeBackFile(field);
        for (const field of controls(form)) clearProblem(form, field.name);
    }

    /**
     * Enter in a field follows the link that saves its row or grid, or applies its filter. Without this the browser would
     * post the form without a command, and what was typed would be gone.
     */
    function saveOnEnter(event) {
        const { key, target } = event;
        if (key !== 'Enter' || event.isComposing || event.defaultPrevented || !target.matches('input')) return;
        const name = nameOf(target.form);
        if (!isGrid(name) || target.matches('[type=submit], [type=button]') || target.form.querySelector('[type=submit], button:not([type])')) return;
        event.preventDefault();
        const saves = (link) => /^javascript:(edit_\w+|filter_source)\(.*'(update|addnew|filter_source)'\)/.test(link.getAttribute('href'))
            && link.getAttribute('href').includes(`'${name}'`);
        const links = (place) => [...place?.querySelectorAll('a[href^="javascript:"]') ?? []].filter(saves);
        (links(target.closest('tr'))[0] ?? links(document)[0])?.click();
    }

    // --- Required inputs ---------------------------------------------------------------------------------------

    /**
     * What a grid requires: [posted name, least number of characters], -1 where any value will do. The engine writes
     * it as the statements of a function, document.<grid>.<name>.required=<n>, for all rows of the page; those without inputs
     * would make the function fail, inputs keep no number, and a name may be no identifier, so its text is read instead.
     */
    function requirements(grid) {
        const script = [...document.scripts].find(({ text }) => text.includes(`function ${grid}_validate()`));
        const statements = script?.text.matchAll(/document\.(\S+?)\.required\s*=\s*(-?\d+)/g) ?? [];
        return [...statements].filter(([, path]) => path.startsWith(`${grid}.`))
            .map(([, path, least]) => [path.slice(grid.length + 1), Number(least)]);
    }

    const isCheckable = (field) => ['radio', 'checkbox'].includes(field.type);

    /** What is wrong with the fields of one name, or "". */
    function problemOf(fields, least) {
        if (isCheckable(fields[0])) return least && !fields.some((field) => field.checked) ? 'Please choose.' : '';
        const length = fields[0].value.trim().length;
        if (least && length === 0) return 'Please fill this in.';
        if (length < least) return `Please give at least ${least} characters.`;
        return fields[0].validationMessage;
    }

    const problemId = (form, name) => `tabrixdb-problem-${nameOf(form)}-${name}`;

    function clearProblem(form, name) {
        const id = problemId(form, name);
        const message = document.getElementById(id);
        if (!message) return;
        message.remove();
        for (const field of controls(form, name).filter((field) => field.hasAttribute('aria-invalid'))) {
            field.removeAttribute('aria-invalid');
            const others = field.getAttribute('aria-describedby').split(' ').filter((other) => other !== id);
            if (others.length) field.setAttribute('aria-describedby', others.join(' '));
            else field.removeAttribute('aria-describedby');
        }
    }

    /** Says beside the fields of one name what is wrong with them, if anything is. */
    function showProblem(form, name, text) {
        if (text && document.getElementById(problemId(form, name))?.textContent === text) return;
        clearProblem(form, name);
        if (!text) return;
        const fields = controls(form, name);
        const message = element('span', { id: problemId(form, name), className: 'tabrixdb-problem', role: 'alert' }, text);
        if (isCheckable(fields[0])) (fields[0].closest('fieldset') ?? (fields[0].closest('label') ?? fields[0]).parentElement).append(message);
        else (fields[0].closest('label') ?? fields[0]).after(message);
        for (const field of fields) {
            field.setAttribute('aria-invalid', 'true');
            field.setAttribute('aria-describedby', [field.getAttribute('aria-describedby') ?? '', message.id].join(' ').trim());
        }
    }

    /**
     * True if everything that a form requires is there; otherwise says beside each input what is wrong, and goes to the first.
     * isSaved: of a field, whether it counts; without it all do.
     */
    function verify_form(form, isSaved = () => true) {
        const least = new Map(requirements(nameOf(form)));
        const wrong = [];
        for (const [name, fields] of controlsByName(form)) {
            if (!isSaved(fields[0])) continue;
            const problem = problemOf(fields, least.get(name) ?? 0);
            showProblem(form, name, problem);
            if (problem) wrong.push(fields[0]);
        }
        wrong[0]?.focus();
        return wrong.length === 0;
    }

    /** A field that was complained about is looked at again while it is being corrected. */
    function checkAgain({ target }) {
        if (!target.form || target.getAttribute('aria-invalid') !== 'true') return;
        const least = new Map(requirements(nameOf(target.form))).get(target.name) ?? 0;
        showProblem(target.form, target.name, problemOf(controls(target.form, target.name), least));
    }

    /** The element that names a field in the page, if there is one: the legend of its group, or what its label begins with. */
    function nameElement(field) {
        if (isCheckable(field)) return field.closest('fieldset')?.querySelector('legend');
        const first = field.closest('label')?.firstElementChild;
        return first && !first.contains(field) ? first : null;
    }

    function markRequired(form) {
        const byName = controlsByName(form);
        for (const [name] of requirements(nameOf(form))) {
            const fields = byName.get(name);
            if (!fields) continue;
            for (const field of fields) {
                if (field.type === 'radio') field.required = true;
                else field.setAttribute('aria-required', 'true');
            }
            const mark = element('span', { className: 'tabrixdb-required', title: 'Required' }, '*');
            mark.setAttribute('aria-hidden', 'true');
            const place = nameElement(fields[0]);
            if (place) place.append(' ', mark);
            else fields[0].before(mark, ' ');
        }
    }

    // --- Names of inputs ---------------------------------------------------------------------------------------

    /** The text that the engine writes behind a box or button becomes its label. */
    function labelItem(field) {
        const text = field.nextSibling;
        if (text?.nodeType !== Node.TEXT_NODE || !text.data.trim()) return;
        const label = element('label', { className: 'tabrixdb-item' });
        field.before(label);
        label.append(field, text);
    }

    /** Any other input without a name of its own is called as the caption above it, or else as its column. */
    function nameField(field) {
        const cell = field.closest('td');
        const captions = cell?.closest('table').rows[0];
        const has = captions && captions !== cell.parentElement && captions.cells.length === cell.parentElement.cells.length;
        const name = has ? captions.cells[cell.cellIndex].textContent.trim() : '';
        field.setAttribute('aria-label', name || field.name.replace(/_\d+$/, '').replaceAll('_', ' '));
    }

    function nameFields(form) {
        // Not field.labels: a browser searches the whole page for it, for each of the fields.
        const labelled = new Set([...document.querySelectorAll('label[for]')].map((label) => label.htmlFor));
        const unnamed = (field) => !field.closest('label') && !labelled.has(field.getAttribute('id'))
            && !field.matches('[aria-label], [aria-labelledby], [title]');
        const fields = controls(form);
        fields.filter(isCheckable).filter(unnamed).forEach(labelItem);
        fields.filter(unnamed).forEach(nameField);
    }

    const ACTIONS = { edit: 'Edit', delete: 'Delete', update: 'Save', cancel: 'Cancel' };

    /** Row buttons that are pictures without a text, as those of the built-in template, get a name. */
    function nameButtons() {
        for (const link of document.querySelectorAll('a[href^="javascript:edit_grid("]')) {
            const [, action] = link.getAttribute('href').match(/'(\w+)'\)$/) ?? [];
            const picture = link.querySelector('img:not([alt])');
            if (!picture || link.textContent.trim() || !ACTIONS[action]) continue;
            picture.alt = ACTIONS[action];
            picture.title = ACTIONS[action];
        }
    }

    // --- Dates -------------------------------------------------------------------------------------------------

    /** Asks for a date and writes it into a field as year-month-day, which the engine reads everywhere. */
    async function show_date(grid, field) {
        const form = findForm(grid);
        const target = form && controls(form, field)[0];
        if (!target) return;
        const done = (day) => {
            target.value = day;
            target.dispatchEvent(new Event('input', { bubbles: true }));
            target.focus();
        };
        const { chooseDate } = await part('calendar.js');
        await chooseDate(target.value.trim(), { element, ask }, done);
    }

    // --- Files -------------------------------------------------------------------------------------------------

    // Files that were sent and are not saved yet, by the field that holds the file's name: { kind, key, file, label, restore() }.
    const sentFiles = new Map();

    /** Where uploads go: uploadhandler is written into the page by the engine. */
    function uploadAddress(parameters) {
        const address = new URL(window.uploadhandler, location.href);
        for (const [name, value] of Object.entries(parameters)) address.searchParams.set(name, value);
        return address.href;
    }

    const UPLOAD_HEADERS = { 'X-TabrixDb': 'upload' };

    function discardFile({ kind, key }) {
        fetch(uploadAddress({ kind, discard: key }), { method: 'POST', headers: UPLOAD_HEADERS, keepalive: true }).catch(() => {});
    }

    /** As if the file had never been chosen. */
    function takeBackFile(field) {
        const sent = sentFiles.get(field);
        if (!sent) return;
        sentFiles.delete(field);
        discardFile(sent);
        sent.restore();
    }

    const takeBackFiles = () => [...sentFiles.keys()].forEach(takeBackFile);

    const isPicture = (file) => /^image\/(png|jpeg|gif|webp|bmp)$/.test(file.type);

    /** Shows beside a control which file it has got; the result is a function that shows what was there before. */
    function showSent(link, file) {
        const picture = link?.querySelector('img');
        if (picture && isPicture(file)) {
            const before = picture.getAttribute('src');
            picture.src = URL.createObjectURL(file);
            return () => picture.setAttribute('src', before ?? '');
        }
        const note = element('span', { className: 'tabrixdb-sent' }, file.name);
        if (isPicture(file)) note.prepend(element('img', { className: 'tabrixdb-preview', alt: '', src: URL.createObjectURL(file) }));
        link?.after(note);
        return () => note.remove();
    }

    /** Puts the name of a file that was sent into its field. */
    function holdFile(field, sent, show) {
        takeBackFile(field);
        const before = field.value;
        const hide = show();
        field.value = sent.file;
        field.dispatchEvent(new Event('input', { bubbles: true }));
        sentFiles.set(field, { ...sent, restore() { field.value = before; hide(); } });
    }

    // The function of a control's link, what its dialog asks, and whether the field itself shows the name.
    const UPLOADS = {
        file: { call: 'upload_file', question: 'Upload a file', named: true },
        picture: { call: 'upload_image', question: 'Upload a picture' },
        database: { call: 'upload_to_db', question: 'Upload a file' },
        database_picture: { call: 'upload_to_dbimage', question: 'Upload a picture' },
    };

    const uploadLink = (kind, grid, name) => document.querySelector(`a[href^="javascript:${UPLOADS[kind].call}('${CSS.escape(grid)}','${CSS.escape(name)}'"]`);

    async function upload(kind, grid, name, place = '') {
        const form = findForm(grid);
        const field = form && [...form.elements].find((input) => input.name === name);
        if (!field) return;
        const folder = place && decodeURI(new URL(place, location.href).pathname);
        const link = uploadLink(kind, grid, name);
        const { chooseFile } = await part('upload.js');
        if (document.querySelector('.tabrixdb-dialog')) return; // of a second click
        const page = { element, isPicture, uploadAddress, UPLOAD_HEADERS, discardFile };
        chooseFile(UPLOADS[kind].question, kind, folder, page, (file, key, stored) => {
            holdFile(field, { kind, key, file: stored, label: file.name },
                () => (UPLOADS[kind].named ? () => {} : showSent(link, file)));
            (link ?? field).focus();
        });
    }

    /** A file into a folder of the site; the field gets its name. */
    function upload_file(grid, field, folder) {
        upload('file', grid, field, folder);
    }

    /** A picture into a folder of the site, whose address stands before the names of pictures. */
    function upload_image(grid, field, prefix) {
        upload('picture', grid, field, prefix);
    }

    /** A file into the column of the record, when that is saved. */
    function upload_to_db(grid, field) {
        upload('database', grid, field);
    }

    function upload_to_dbimage(grid, field) {
        upload('database_picture', grid, field);
    }

    const filesOf = (form) => [...sentFiles.keys()].filter((field) => field.form === form);

    /** The files of a form that is posted with them, for the next page. This one does not take them back any more. */
    function releaseFiles(form) {
        return filesOf(form).map((field) => {
            const { kind, key, file, label } = sentFiles.get(field);
            sentFiles.delete(field);
            return { name: field.name, kind, key, file, label };
        });
    }

    /** After it: files of a record that was saved are not needed any more; others belong to their fields again. */
    function keepFiles(form, known, saved) {
        for (const sent of known) {
            const field = [...form.elements].find((input) => input.name === sent.name);
            if (saved && sent.kind.startsWith('database')) discardFile(sent);
            else if (!saved && field) holdFile(field, sent, () => (UPLOADS[sent.kind].named ? () => {} : showSent(uploadLink(sent.kind, nameOf(form), sent.name), { name: sent.label, type: '' })));
        }
    }

    // --- Dialogs -----------------------------------------------------------------------------------------------

    function element(tag, properties, ...children) {
        const made = Object.assign(document.createElement(tag), properties);
        made.append(...children);
        return made;
    }

    // Of no weight against the rules of a site.
    const STYLE = `
        :where(.tabrixdb-required) { color: #b91c1c; font-weight: 700; cursor: help; }
        :where(.tabrixdb-problem) { display: block; margin-top: .2rem; color: #b91c1c; font-size: .875em; }
        :where(.tabrixdb-message) { scroll-margin: .5rem; }
        :where([aria-invalid=true]) { outline: 2px solid #b91c1c; outline-offset: -1px; }
        :where(.tabrixdb-item) { display: inline-flex; gap: .3em; align-items: baseline; margin-right: .75em; }
        .tabrixdb-dialog { color-scheme: light; border: 1px solid #cbd5e1; border-radius: .6rem; padding: 1.2rem; min-width: min(20rem, 80vw);
            font: 1rem/1.4 system-ui, sans-serif; color: #0f172a; background: #fff; box-shadow: 0 16px 48px rgb(15 23 42 / .25); }
        .tabrixdb-dialog::backdrop { background: rgb(15 23 42 / .35); }
        .tabrixdb-dialog h2 { margin: 0 0 .8rem; font-size: 1.05rem; }
        .tabrixdb-dialog label { display: block; margin-bottom: .8rem; }
        .tabrixdb-dialog select, .tabrixdb-dialog input { display: block; box-sizing: border-box; width: 100%; margin-top: .2rem;
            padding: .45rem; font: inherit; border: 1px solid #94a3b8; border-radius: .35rem; }
        .tabrixdb-dialog p { display: flex; gap: .5rem; justify-content: flex-end; margin: 0; }
        .tabrixdb-dialog button { padding: .45rem 1rem; font: inherit; border: 1px solid #94a3b8; border-radius: .35rem; background: #fff; cursor: pointer; }
        .tabrixdb-dialog button:disabled { opacity: .5; cursor: default; }
        .tabrixdb-calendar { min-width: 0; }
        .tabrixdb-month { display: flex; align-items: center; justify-content: space-between; margin-bottom: .5rem; }
        .tabrixdb-days { border-collapse: collapse; margin: 0 auto .8rem; }
        .tabrixdb-days th { padding: .3rem 0; font-size: .8rem; font-weight: 600; color: #64748b; }
        .tabrixdb-days td { padding: 1px; }
        .tabrixdb-dialog .tabrixdb-days button { width: 2.5rem; height: 2.5rem; padding: 0; border-color: transparent; font-variant-numeric: tabular-nums; }
        .tabrixdb-dialog .tabrixdb-turn { padding: .25rem .9rem; font-size: 1.2rem; line-height: 1.2; }
        .tabrixdb-days .tabrixdb-other-month button { color: #94a3b8; }
        .tabrixdb-dialog .tabrixdb-days .tabrixdb-today button { border-color: #1d4ed8; }
        .tabrixdb-dialog .tabrixdb-days .tabrixdb-chosen button { background: #1d4ed8; color: #fff; }
        .tabrixdb-dialog .tabrixdb-days button:hover { background: #dbeafe; color: #0f172a; }
        .tabrixdb-dialog button:focus-visible { outline: 2px solid #1d4ed8; outline-offset: 1px; }
        .tabrixdb-dialog progress { width: 100%; }
        .tabrixdb-dialog .tabrixdb-problem { max-width: 22rem; margin-bottom: .8rem; }
        .tabrixdb-dialog .tabrixdb-problem:empty { display: none; }
        .tabrixdb-preview { max-width: min(20rem, 75vw); max-height: 12rem; display: block; margin: 0 0 .8rem; border-radius: .35rem; }
        .tabrixdb-preview[hidden] { display: none; }
        :where(.tabrixdb-sent) { margin-left: .5em; }
        :where(.tabrixdb-sent) .tabrixdb-preview { max-width: 8rem; max-height: 6rem; }
        .tabrixdb-dialog button[type=submit] { border-color: #1d4ed8; background: #1d4ed8; color: #fff; }`;

    /** A dialog with these fields; done is called when its button is pressed and the browser finds the fields in order. */
    function ask(question, button, fields, done) {
        const cancel = element('button', { type: 'button' }, 'Cancel');
        const title = element('h2', { id: 'tabrixdb-dialog-title' }, question);
        const form = element('form', { method: 'dialog' }, title, ...fields,
            element('p', {}, cancel, element('button', { type: 'submit' }, button)));
        const dialog = element('dialog', { className: 'tabrixdb-dialog' }, form);
        dialog.setAttribute('aria-labelledby', title.id);
        cancel.addEventListener('click', () => dialog.close());
        dialog.addEventListener('close', () => dialog.remove());
        form.addEventListener('submit', (event) => {
            event.preventDefault();
            dialog.close();
            done();
        });
        document.body.append(dialog);
        dialog.showModal();
    }

    // --- Filters ---------------------------------------------------------------------------------------------

    // How the operators of the filter dialog are written. ADO knows wildcards at the end and at both ends of a text.
    const COMPARISONS = [
        ['=', 'is'], ['<>', 'is not'], ['<', 'is less than'], ['<=', 'is at most'], ['>', 'is more than'], ['>=', 'is at least'],
    ];
    const TEXT_COMPARISONS = [['%LIKE%', 'contains'], ['LIKE%', 'starts with'], ...COMPARISONS];

    const quoted = (text) => `'${text.replaceAll("'", "''")}'`;

    // By the type code that the engine gives: numbers are written bare, texts in quotes, dates between "#".
    const TYPES = {
        1: { input: { type: 'number', step: 'any' }, comparisons: COMPARISONS, literal: (value) => value },
        2: { input: { type: 'text' }, comparisons: TEXT_COMPARISONS, literal: quoted },
        3: { input: { type: 'date' }, comparisons: COMPARISONS, literal: (value) => `#${value}#` },
    };

    /** The filter expression, such as [Name] LIKE '%tea%'. */
    function filterExpression(field, operator, value, type) {
        if (operator === '%LIKE%') return `${field} LIKE ${quoted(`%${value}%`)}`;
        if (operator === 'LIKE%') return `${field} LIKE ${quoted(`${value}%`)}`;
        return `${field} ${operator} ${type.literal(value)}`;
    }

    /**
     * Asks for a comparison with one column and filters the grid by it.
     * field: the column's name in brackets; code: 1 a number, 2 text, 3 a date.
     */
    function filter_field(grid, field, code) {
        if (!findForm(grid)) return;
        const type = TYPES[code] || TYPES[2];
        const name = field.replace(/^\[|\]$/g, '');
        const operator = element('select', {}, ...type.comparisons.map(([value, text]) => element('option', { value }, text)));
        const value = element('input', { ...type.input, required: true, autofocus: true });
        ask(`Show rows where ${name}`, 'Filter', [element('label', {}, 'Comparison', operator), element('label', {}, 'Value', value)],
            () => post(grid, 'filter_grid', filterExpression(field, operator.value, value.value, type)));
    }

    /** Shows all rows of the grid again. */
    function clear_filter(grid) {
        post(grid, 'filter_grid_clear', '');
    }

    /**
     * Exactly one condition of a filter form leads and has no connective. Where the column that is meant to lead was left empty, the
     * first one with a value does; its choice of And and Or is not posted.
     */
    function leadFilter(form) {
        const fields = controlsByName(form);
        const columns = [...fields.keys()].filter((name) => fields.has(`${name}_operator`)
            && fields.get(name).some((field) => (isCheckable(field) ? field.checked : field.value)));
        if (columns.every((name) => fields.has(`${name}_andor`)))
            for (const choice of fields.get(`${columns[0]}_andor`) ?? []) choice.checked = false;
    }

    /** Applies a source's filter form, or clears it. command: filter_source or filter_source_clear. */
    function filter_source(source, command) {
        const form = findForm(source);
        if (form && command === 'filter_source') leadFilter(form);
        post(source, command, '');
    }

    /** Shows the filter form of a grid's source, or hides it. command: filter_grid_source or filter_grid_source_clear. */
    function filter_grid_source(grid, command) {
        post(grid, command, '');
    }

    // -----------------------------------------------------------------------------------------------------------

    function start() {
        document.head.append(element('style', {}, STYLE));
        tieFields();
        nameButtons();
        for (const form of allForms()) {
            nameFields(form);
            markRequired(form);
        }
        document.addEventListener('keydown', saveOnEnter);
        document.addEventListener('input', checkAgain);
        addEventListener('formdata', postedByPage);
        addEventListener('pagehide', takeBackFiles);
        returnToPlace();
    }

    Object.assign(window, {
        grid_navigate, grid_sort, grid_pageoffset, toggle_to_form, toggle_to_grid,
        edit_source, edit_source_onstart, edit_grid, reset_form, verify_form,
        show_date, upload_file, upload_image, upload_to_db, upload_to_dbimage,
        filter_field, clear_filter, filter_source, filter_grid_source,
    });

    if (document.readyState === 'loading') document.addEventListener('DOMContentLoaded', start);
    else start();
})();
