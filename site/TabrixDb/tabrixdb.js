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
 * Load it once in a page: <script src="/TabrixDb/tabrixdb.js"></script>
 */
(() => {
    'use strict';

    // --- Posting a command ----------------------------------------------------------------------------------

    const placeKey = () => `tabrixdb:place:${location.pathname}`;

    /** The form of a grid or filter, or null with a message to whoever writes the page. */
    function findForm(name) {
        const form = document.forms.namedItem(name);
        if (form?.elements.namedItem(`${name}_command`) && form.elements.namedItem(`${name}_params`)) return form;
        console.error(`TabrixDb: this page has no grid or filter form named "${name}".`);
        return null;
    }

    /** The element that an anchor such as "#orders_start" leads to. */
    function anchored(anchor) {
        const name = anchor.replace(/^#/, '');
        return name ? document.getElementById(name) || document.getElementsByName(name)[0] : undefined;
    }

    /** sessionStorage, where the browser allows it: the place on the page is a comfort, not a need. */
    function remember(key, value) {
        try { sessionStorage.setItem(key, value); } catch { /* private mode, or storage is full */ }
    }

    function recall(key) {
        try {
            const value = sessionStorage.getItem(key);
            sessionStorage.removeItem(key);
            return value;
        } catch {
            return null;
        }
    }

    /**
     * Posts a command. The next page is shown at the form's anchor if the page has one of that name, and
     * otherwise at the place where this page is now.
     */
    function post(name, command, params, anchor) {
        const form = findForm(name);
        if (!form) return;
        const fields = form.elements;
        fields.namedItem(`${name}_command`).value = command;
        fields.namedItem(`${name}_params`).value = params;
        const target = anchor || fields.namedItem(`${name}_anchor`)?.value || '';
        const place = anchored(target) ? target : '';
        form.setAttribute('action', location.pathname + location.search + place);
        remember(placeKey(), place ? '' : `${scrollX},${scrollY}`);
        // A field of the page may be called "submit" and hide the form's own method.
        HTMLFormElement.prototype.submit.call(form);
    }

    /** After a command: back to the old place, and make reloading ask for the page instead of posting again. */
    function returnToPlace() {
        const place = recall(placeKey());
        if (place === null) return;
        history.replaceState(history.state, '', location.href);
        if (place) {
            const [x, y] = place.split(',').map(Number);
            scrollTo({ left: x, top: y, behavior: 'instant' });
        }
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

    /** Asks before a delete; before a save marks the required inputs, as the engine says, and lets the browser check them. */
    function agreed(grid, action) {
        if (action === 'delete') return confirm('Delete this record?');
        if (!SAVING.includes(action)) return true;
        const form = findForm(grid);
        const mark = window[`${grid}_validate`];
        try {
            if (typeof mark === 'function') mark();
        } catch {
            // The function also names the inputs of rows that are not being edited, and these are not there.
        }
        return form !== null && verify_form(form);
    }

    /** The whole grid. action: edit, update, cancel, add, addnew, canceladd or delete. */
    function edit_source(grid, action) {
        if (agreed(grid, action)) post(grid, 'edit_source', `${grid};${action}`);
    }

    /** The same, but the next page is shown from the start of the grid. */
    function edit_source_onstart(grid, action) {
        if (agreed(grid, action)) post(grid, 'edit_source', `${grid};${action}`, `#${grid}_start`);
    }

    /** One row of the page, counted from 0. action: edit, update, cancel or delete. */
    function edit_grid(row, grid, action) {
        if (agreed(grid, action)) post(grid, 'edit_grid', `${grid};${action};${row}`);
    }

    /** Puts every input back to the value that it came with. */
    function reset_form(grid) {
        const form = findForm(grid);
        if (form) HTMLFormElement.prototype.reset.call(form);
    }

    /** True if every required input holds a value; otherwise the browser shows which one does not. */
    function verify_form(form) {
        return form.reportValidity();
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

    function element(tag, properties, ...children) {
        const made = Object.assign(document.createElement(tag), properties);
        made.append(...children);
        return made;
    }

    const DIALOG_STYLE = `
        .tabrixdb-dialog { color-scheme: light; border: 1px solid #cbd5e1; border-radius: .6rem; padding: 1.2rem; min-width: min(20rem, 80vw);
            font: 1rem/1.4 system-ui, sans-serif; color: #0f172a; background: #fff; box-shadow: 0 16px 48px rgb(15 23 42 / .25); }
        .tabrixdb-dialog::backdrop { background: rgb(15 23 42 / .35); }
        .tabrixdb-dialog h2 { margin: 0 0 .8rem; font-size: 1.05rem; }
        .tabrixdb-dialog label { display: block; margin-bottom: .8rem; }
        .tabrixdb-dialog select, .tabrixdb-dialog input { display: block; box-sizing: border-box; width: 100%; margin-top: .2rem;
            padding: .45rem; font: inherit; border: 1px solid #94a3b8; border-radius: .35rem; }
        .tabrixdb-dialog p { display: flex; gap: .5rem; justify-content: flex-end; margin: 0; }
        .tabrixdb-dialog button { padding: .45rem 1rem; font: inherit; border: 1px solid #94a3b8; border-radius: .35rem; background: #fff; cursor: pointer; }
        .tabrixdb-dialog button[type=submit] { border-color: #1d4ed8; background: #1d4ed8; color: #fff; }`;

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
        const cancel = element('button', { type: 'button' }, 'Cancel');
        const title = element('h2', { id: 'tabrixdb-dialog-title' }, `Show rows where ${name}`);
        const form = element('form', { method: 'dialog' }, title,
            element('label', {}, 'Comparison', operator), element('label', {}, 'Value', value),
            element('p', {}, cancel, element('button', { type: 'submit' }, 'Filter')));
        const dialog = element('dialog', { className: 'tabrixdb-dialog' }, element('style', {}, DIALOG_STYLE), form);
        dialog.setAttribute('aria-labelledby', title.id);

        cancel.addEventListener('click', () => dialog.close());
        dialog.addEventListener('close', () => dialog.remove());
        form.addEventListener('submit', () => {
            post(grid, 'filter_grid', filterExpression(field, operator.value, value.value, type));
        });
        document.body.append(dialog);
        dialog.showModal();
    }

    /** Shows all rows of the grid again. */
    function clear_filter(grid) {
        post(grid, 'filter_grid_clear', '');
    }

    /** Applies a source's filter form, or clears it. command: filter_source or filter_source_clear. */
    function filter_source(source, command) {
        post(source, command, '');
    }

    /** Shows the filter form of a grid's source, or hides it. command: filter_grid_source or filter_grid_source_clear. */
    function filter_grid_source(grid, command) {
        post(grid, command, '');
    }

    // -----------------------------------------------------------------------------------------------------------

    Object.assign(window, {
        grid_navigate, grid_sort, grid_pageoffset, toggle_to_form, toggle_to_grid,
        edit_source, edit_source_onstart, edit_grid, reset_form, verify_form,
        filter_field, clear_filter, filter_source, filter_grid_source,
    });

    if (document.readyState === 'loading') document.addEventListener('DOMContentLoaded', returnToPlace);
    else returnToPlace();
})();
