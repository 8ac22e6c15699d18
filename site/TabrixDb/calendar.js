/*
 * The calendar of date fields: a month from calendar.asp in a dialog, by clicks and keys. tabrixdb.js loads it when a date is
 * asked for the first time, and lends it what makes elements and dialogs: { element, ask }.
 */

const CALENDAR = new URL('calendar.asp', import.meta.url).href;

/** A day so many days and months later, as year-month-day; the last day of a month that is shorter. */
function laterDay(day, days, months = 0) {
    const date = new Date(`${day}T00:00Z`);
    const wanted = date.getUTCDate();
    date.setUTCDate(1);
    date.setUTCMonth(date.getUTCMonth() + months);
    const last = new Date(Date.UTC(date.getUTCFullYear(), date.getUTCMonth() + 1, 0)).getUTCDate();
    date.setUTCDate(Math.min(wanted, last) + days);
    return date.toISOString().slice(0, 10);
}

/** Where a key leads from a day; week is its place in the week, from 0. */
function dayByKey({ key, shiftKey }, day, week) {
    switch (key) {
        case 'ArrowLeft': return laterDay(day, -1);
        case 'ArrowRight': return laterDay(day, 1);
        case 'ArrowUp': return laterDay(day, -7);
        case 'ArrowDown': return laterDay(day, 7);
        case 'Home': return laterDay(day, -week);
        case 'End': return laterDay(day, 6 - week);
        case 'PageUp': return laterDay(day, 0, shiftKey ? -12 : -1);
        case 'PageDown': return laterDay(day, 0, shiftKey ? 12 : 1);
        default: return '';
    }
}

async function fetchMonth(date) {
    const response = await fetch(`${CALENDAR}?${new URLSearchParams({ date })}`);
    const html = await response.text();
    if (!response.ok || !html.includes('tabrixdb-day')) throw new Error(html);
    return html;
}

/** The calendar in a dialog, with a month that was fetched. done is called with the day that was chosen. */
function calendarDialog(firstMonth, { element }, done) {
    const title = element('h2', { id: 'tabrixdb-dialog-title' }, 'Choose a date');
    const month = element('div');
    const cancel = element('button', { type: 'button' }, 'Cancel');
    const dialog = element('dialog', { className: 'tabrixdb-dialog tabrixdb-calendar' }, title, month, element('p', {}, cancel));
    dialog.setAttribute('aria-labelledby', title.id);
    let chosen;

    const days = () => [...month.querySelectorAll('.tabrixdb-day button')];
    const show = (html, day, focus = true) => {
        month.innerHTML = html;
        const marked = month.querySelector('.tabrixdb-chosen button');
        // Today is marked as such, and stands for no date as well.
        chosen ??= marked?.closest('.tabrixdb-today') ? '' : marked?.value;
        for (const button of days()) button.parentElement.classList.toggle('tabrixdb-chosen', button.value === chosen);
        month.querySelector('.tabrixdb-chosen button')?.setAttribute('aria-pressed', 'true');
        const here = days().find((button) => button.value === day) ?? marked;
        if (!here) return;
        here.tabIndex = 0;
        if (focus) here.focus();
    };
    const goTo = async (day, turned) => {
        const known = turned ? undefined : days().find((button) => button.value === day && !button.parentElement.matches('.tabrixdb-other-month'));
        if (known) {
            for (const button of days()) button.tabIndex = -1;
            known.tabIndex = 0;
            known.focus();
            return;
        }
        const html = await fetchMonth(day).catch(() => ''); // beyond the calendar's years, or no server
        if (!html || !dialog.isConnected) return;
        show(html, day, !turned);
        if (turned) [...month.querySelectorAll('.tabrixdb-turn')].find((button) => button.getAttribute('aria-label') === turned)?.focus();
    };
    month.addEventListener('click', ({ target }) => {
        const button = target.closest('button');
        if (!button?.value) return; // beyond the ends of the calendar
        if (button.matches('.tabrixdb-turn')) {
            goTo(button.value, button.getAttribute('aria-label'));
            return;
        }
        dialog.close();
        done(button.value);
    });
    month.addEventListener('keydown', (event) => {
        const cell = event.target.closest('.tabrixdb-day');
        const day = cell && dayByKey(event, event.target.value, cell.cellIndex);
        if (!day) return;
        event.preventDefault();
        goTo(day);
    });
    cancel.addEventListener('click', () => dialog.close());
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
    show(firstMonth);
}

/** Without the calendar: the browser's own way to type a date. */
function dateDialog(text, { element, ask }, done) {
    const [known] = text.match(/\d{4}-\d\d-\d\d/) ?? [];
    const shown = new Date(text);
    const day = known ?? (Number.isNaN(shown.getTime()) ? '' : [shown.getFullYear(), shown.getMonth() + 1, shown.getDate()]
        .map((part) => String(part).padStart(2, '0')).join('-'));
    const value = element('input', { type: 'date', value: day, required: true, autofocus: true });
    ask('Choose a date', 'Choose', [element('label', {}, 'Date', value)], () => done(value.value));
}

/** Asks for a date; text is what the field holds. done is called with the day as year-month-day. */
export async function chooseDate(text, page, done) {
    const month = await fetchMonth(text).catch(() => '');
    if (document.querySelector('.tabrixdb-dialog')) return; // of a second click
    if (month) calendarDialog(month, page, done);
    else dateDialog(text, page, done);
}
