/*
 * The dialog of upload controls: a file is chosen, shown and sent to the site's upload handler. tabrixdb.js loads it when a file
 * is asked for the first time, and lends it what it takes: { element, isPicture, uploadAddress, UPLOAD_HEADERS, discardFile }.
 */

/** What the upload handler answers: an object, with error if it is none that one can go on with. */
function answerOf(status, text) {
    try {
        const answer = JSON.parse(text);
        if (typeof answer === 'object' && answer) return answer;
    } catch { /* a page that says what is wrong, for whoever looks after the site */ }
    return { error: status === 413 ? 'The file is too large for this server.' : `This site does not take the file (${status}).` };
}

async function uploadRules(kind, folder, { uploadAddress }) {
    if (!window.uploadhandler) return { error: 'This site takes no files.' };
    try {
        const response = await fetch(uploadAddress({ kind, folder }));
        return answerOf(response.status, await response.text());
    } catch {
        return { error: 'The server can not be reached. Please try again.' };
    }
}

const randomKey = () => [...crypto.getRandomValues(new Uint8Array(16))].map((byte) => byte.toString(16).padStart(2, '0')).join('');

/**
 * Sends one file. Gives its key, a promise of the answer, and a function that stops it and takes it back, however far it
 * has come. progress is called with the share that was sent.
 */
function sendFile(kind, folder, file, { uploadAddress, UPLOAD_HEADERS, discardFile }, progress) {
    const key = randomKey();
    const request = new XMLHttpRequest();
    const answer = new Promise((resolve) => {
        request.upload.addEventListener('progress', ({ loaded, total }) => progress(loaded / total));
        request.addEventListener('load', () => resolve(answerOf(request.status, request.responseText)));
        request.addEventListener('error', () => resolve({ error: 'The file could not be sent. It may be too large for this server.' }));
    });
    const form = new FormData();
    form.append('file', file);
    request.open('POST', uploadAddress({ kind, folder, key }));
    for (const [name, value] of Object.entries(UPLOAD_HEADERS)) request.setRequestHeader(name, value);
    request.send(form);
    const stop = () => {
        request.abort();
        discardFile({ kind, key });
    };
    return { key, answer, stop };
}

const megabytes = (bytes) => `${(bytes / 1048576).toLocaleString(undefined, { maximumFractionDigits: 1 })} MB`;

/** Lets the visitor choose a file, shows it and sends it. done is called with the file, its key, and the name that it has now. */
export function chooseFile(question, kind, folder, page, done) {
    const { element, isPicture } = page;
    const chooser = element('input', { type: 'file', required: true, autofocus: true, disabled: true });
    const preview = element('img', { className: 'tabrixdb-preview', alt: 'Preview', hidden: true });
    const bar = element('progress', { value: 0, hidden: true, ariaLabel: 'Sent' });
    const rules = element('small', {}, 'One moment ...');
    const problem = element('div', { className: 'tabrixdb-problem', role: 'alert' });
    const send = element('button', { type: 'submit', disabled: true }, 'Upload');
    const cancel = element('button', { type: 'button' }, 'Cancel');
    const title = element('h2', { id: 'tabrixdb-dialog-title' }, question);
    const form = element('form', { method: 'dialog' }, title, element('label', {}, 'File', chooser, rules),
        preview, bar, problem, element('p', {}, cancel, send));
    const dialog = element('dialog', { className: 'tabrixdb-dialog' }, form);
    dialog.setAttribute('aria-labelledby', title.id);
    let most = Infinity;
    let sending = null;
    let shown = '';

    const show = () => {
        const [file] = chooser.files;
        URL.revokeObjectURL(shown);
        shown = file && isPicture(file) ? URL.createObjectURL(file) : '';
        preview.hidden = !shown;
        if (shown) preview.src = shown;
        problem.textContent = file && file.size > most ? `The file is too large: ${megabytes(file.size)}.` : '';
        send.disabled = !file || file.size > most;
    };
    chooser.addEventListener('change', show);
    cancel.addEventListener('click', () => dialog.close());
    dialog.addEventListener('close', () => {
        sending?.stop();
        URL.revokeObjectURL(shown);
        dialog.remove();
    });
    form.addEventListener('submit', async (event) => {
        event.preventDefault();
        const [file] = chooser.files;
        if (!file || sending) return;
        for (const control of [chooser, send]) control.disabled = true;
        bar.hidden = false;
        problem.textContent = '';
        sending = sendFile(kind, folder, file, page, (share) => { bar.value = share; });
        const { key, answer: answered } = sending;
        const answer = await answered;
        sending = null;
        for (const control of [chooser, send]) control.disabled = false;
        bar.hidden = true;
        if (answer.error || !answer.file) {
            problem.textContent = answer.error ?? 'This site does not take the file.';
            return;
        }
        dialog.close();
        done(file, key, answer.file);
    });
    document.body.append(dialog);
    dialog.showModal();
    uploadRules(kind, folder, page).then((answer) => {
        problem.textContent = answer.error ?? '';
        rules.textContent = answer.error ? '' : `At most ${megabytes(answer.most)}: ${answer.types.replaceAll(',', ' ')}`;
        if (answer.error) return cancel.focus();
        chooser.accept = answer.types;
        chooser.disabled = false;
        most = answer.most;
        chooser.focus();
    });
}
