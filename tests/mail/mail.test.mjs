// Mails as their readers get them: a MIME parser reads what pages send, from the pickup folder and from a real mail
// server.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, readdirSync, rmSync, unlinkSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import PostalMime from 'postal-mime';
import { SMTPServer } from 'smtp-server';
import { root, startServer } from '../browser/server.mjs';

/** A site with the pages of this folder and these settings of mail. */
async function startSite(settings) {
    const extra = mkdtempSync(join(tmpdir(), 'tabrixdb-mail-'));
    cpSync(join(root, 'tests/mail/site'), extra, { recursive: true });
    const lines = Object.entries(settings).map(([key, value]) => `${key} = ${JSON.stringify(value)}\n`);
    const demo = readFileSync(join(root, 'site/tabrixdb.toml'), 'utf8');
    writeFileSync(join(extra, 'tabrixdb.toml'), demo.replace('[mail]\n', `[mail]\n${lines.join('')}`));
    const server = await startServer({ extra });
    rmSync(extra, { recursive: true });
    return server;
}

/** What a page answers to a posted form. */
async function post(server, path, fields) {
    const response = await fetch(server.url + path, { method: 'POST', body: new URLSearchParams(fields) });
    return (await response.text()).trim();
}

/** The raw messages of the pickup folder, which is empty afterwards. */
function collect(server) {
    const folder = join(server.site, 'mail');
    return readdirSync(folder).map((name) => {
        assert.match(name, /^\w+\.eml$/);
        const raw = readFileSync(join(folder, name), 'latin1');
        unlinkSync(join(folder, name));
        return raw;
    });
}

const plain = (text) => text.replaceAll('\r\n', '\n').replace(/\n$/, '');
const parse = (raw) => PostalMime.parse(raw);
const boxes = (list) => (list ?? []).map(({ name, address }) => `${name}<${address}>`);
const headerNames = (raw) => raw.split('\r\n\r\n')[0].split('\r\n').filter((line) => !/^[ \t]/.test(line)).map((line) => line.split(':')[0]);
const ordinary = { from: 'shop@site.example', to: 'ann@site.example', subject: 'Hello', body: 'Text' };

let site;
before(async () => { site = await startSite({ errors_per_hour: 12 }); });
after(() => site?.stop());

async function sendOne(fields) {
    assert.equal(await post(site, '/mail.asp', { ...ordinary, ...fields }), 'sent');
    const [raw, ...more] = collect(site);
    assert.equal(more.length, 0);
    assert.match(raw, /^[\t\r\n\x20-\x7e]*$/, 'only ASCII');
    assert.ok(raw.split('\r\n').every((line) => line.length <= 100 && !line.includes('\n') && !line.includes('\r')), 'lines are short and end in CR LF');
    return { raw, mail: await parse(raw) };
}

test('subjects, names and bodies are read back as they were sent', async () => {
    const subjects = ['', 'Hello', 'two  blanks', `${'word '.repeat(60)}end`, 'x'.repeat(300), 'Grüße 😀 '.repeat(20).trim(), '=?utf-8?B?QQ==?=', 'a "quoted" <b>; c, d'];
    for (const subject of subjects) assert.equal((await sendOne({ subject })).mail.subject ?? '', subject);

    const bodies = ['', 'one line', 'two\r\nlines\r\n', '.\r\n..\r\n.dots', 'blanks at the end   \r\n\ttabs\t\r\n', 'x=1&y=2'.repeat(100), 'ü'.repeat(500), `${'😀'.repeat(200)}\r\nend`, 'From here\r\n--\r\nsigned', '\u0001\u007f\u00a0'];
    for (const body of bodies) {
        const { mail } = await sendOne({ body });
        assert.equal(plain(mail.text ?? ''), plain(body));
        assert.equal(mail.html, undefined);
    }
    const { mail } = await sendOne({ from: '"Müller, \\"Ed\\" \\\\" <m@site.example>', to: 'a@b.example; Ann Example <ann@c.example>, "Cid, jr." <cid@d.example>;' });
    assert.deepEqual(boxes([mail.from]), ['Müller, "Ed" \\<m@site.example>']);
    assert.deepEqual(boxes(mail.to), ['<a@b.example>', 'Ann Example<ann@c.example>', 'Cid, jr.<cid@d.example>']);
    assert.ok(Math.abs(new Date(mail.date) - Date.now()) < 60_000);
    assert.match(mail.messageId, /^<\w{16}@site\.example>$/);
});

test('line breaks add no headers', async () => {
    const evil = 'x\r\nBcc: evil@evil.example\r\n\r\n<b>body</b>';
    const plain = ['Date', 'Message-ID', 'From', 'To', 'Subject', 'MIME-Version', 'Content-Type', 'Content-Transfer-Encoding'];
    const { raw, mail } = await sendOne({ subject: evil });
    assert.deepEqual(headerNames(raw), plain);
    assert.equal(mail.subject, 'x Bcc: evil@evil.example <b>body</b>');
    assert.deepEqual(headerNames((await sendOne({ subject: 'lone\rreturn\nand\u2028line\u0085break' })).raw), plain);
    const named = await sendOne({ to: `"${evil.replaceAll('<', '').replaceAll('>', '')}" <ann@site.example>` });
    assert.deepEqual(headerNames(named.raw), plain);
    assert.deepEqual(named.mail.to.map(({ address }) => address), ['ann@site.example']);
    for (const field of ['from', 'to']) {
        assert.match(await post(site, '/mail.asp', { ...ordinary, [field]: 'a@b.example\r\nBcc: evil@evil.example' }), /Not a mail address.*CDONTS Objects may not be installed!/s);
    }
    const own = await sendOne({ object: 1, header: evil, reply: 'r@b.example', base: evil });
    assert.ok(!headerNames(own.raw).includes('Bcc'));
});

test('what is no address is refused', async () => {
    for (const to of ['', ';', 'ann', '@b.example', 'a@', 'a b@c.example', 'a@b@c.example', 'a..b@c.example', '<a@b.example', 'Ann <ann>', 'a@b.example x', 'ü@b.example', 'a@b.example>', `${'x'.repeat(65)}@b.example`, 'a@b.example '.repeat(600)]) {
        assert.match(await post(site, '/mail.asp', { ...ordinary, to }), /Send Email/, to);
    }
    assert.deepEqual(collect(site), []);
});

test('an HTML body counts its links from the site', async () => {
    const { mail } = await sendOne({ format: 'html', body: '<a href="x.asp">ü</a>', path: 'demo' });
    assert.equal(mail.html.trimEnd(), `<BASE HREF="${site.url}/demo" >\n<a href="x.asp">ü</a>`);
    const own = '<html><base HREF="http://x.example"></html>';
    assert.equal((await sendOne({ format: 'HTML', body: own })).mail.html.trimEnd(), own);
});

test('tags become the values of a record, those of Null stay', async () => {
    const { mail } = await sendOne({ id: 1, format: 'Text', subject: '#~NAME~# #~[the name]~#', body: '#~name~##~gap~##~[Name]~#' });
    const [name] = mail.subject.match(/^(.+) \1$/).slice(1);
    assert.equal(mail.text.trimEnd(), `${name}#~gap~#${name}`);
});

test('the mail object has copies, headers, attachments', async () => {
    const name = `Übersicht "${'long '.repeat(20)}".asp`;
    const { raw, mail } = await sendOne({ object: 1, cc: 'c1@b.example,c2@b.example', bcc: 'h@b.example', reply: 'Zoë <r@b.example>', header: 'ö', base: 'http://x.example/', body: '<b>hi</b>', name });
    assert.deepEqual([boxes(mail.cc), boxes(mail.bcc), boxes(mail.replyTo)], [['<c1@b.example>', '<c2@b.example>'], ['<h@b.example>'], ['Zoë<r@b.example>']]);
    const values = Object.fromEntries(mail.headers.map(({ key, value }) => [key, value]));
    assert.equal(values.importance, 'high');
    assert.equal(values['content-base'], 'http://x.example/');
    assert.match(raw, /^X-Shop: =\?utf-8\?B\?w7Y=\?=\r$/m);
    assert.equal(mail.html.trimEnd(), '<b>hi</b>');
    assert.equal(mail.attachments[0].filename, name);
    assert.deepEqual(Buffer.from(mail.attachments[0].content), readFileSync(join(site.site, 'mail.asp')));
});

test('errors are mailed to the administrator, so many an hour and their own not', async () => {
    const page = await post(site, '/fails.asp', { admin: 'no address' });
    assert.match(page, /CreateGrid - orders &lt;1&gt;[^]*Not a mail address[^]*Send Email/);
    for (let i = 0; i < 5; ++i) assert.doesNotMatch(await post(site, '/fails.asp', { admin: 'admin@site.example' }), /Send Email/);
    const mails = await Promise.all(collect(site).map(parse));
    assert.equal(mails.length, 2, 'the one that failed counted');
    assert.deepEqual([mails[0].subject, boxes([mails[0].from]), boxes(mails[0].to)], ['TabrixDb Error', ['<admin@site.example>'], ['<admin@site.example>']]);
    assert.match(mails[0].html, /^<BASE HREF="http:\/\/127[^]*CreateGrid - orders &lt;1&gt;/);
    const [reference] = mails[0].html.match(/(?<=<p>Reference: )[A-Z2-9]{8}(?=<\/p>)/);
    assert.match(site.log(), new RegExp(`500 ${reference} TabrixDb error 5 [^\\n]*CreateGrid - orders <1> in /fails.asp, line 6`));
    assert.match(site.log(), /An error was not mailed[^\n]*fails.asp[^\n]*CreateGrid - orders/);
});

test('a mail server gets the message, encrypted and after a log-in', async (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-smtp-'));
    t.after(() => rmSync(folder, { recursive: true }));
    const [key, cert] = ['key.pem', 'cert.pem'].map((name) => join(folder, name));
    execFileSync('openssl', ['req', '-x509', '-newkey', 'ec', '-pkeyopt', 'ec_paramgen_curve:P-256', '-nodes', '-days', '2', '-subj', '/CN=localhost', '-addext', 'subjectAltName=DNS:localhost', '-keyout', key, '-out', cert], { stdio: 'ignore' });
    const received = [];
    const smtp = new SMTPServer({
        key: readFileSync(key), cert: readFileSync(cert), size: 100_000,
        onAuth: ({ username, password }, session, done) => (session.secure && username === 'shop' && password === 'pä"ss' ? done(null, { user: 1 }) : done(new Error('wrong password'))),
        onRcptTo: ({ address }, session, done) => done(address.startsWith('nobody') ? new Error('no such mailbox') : null),
        onData(stream, session, done) {
            const parts = [];
            stream.on('data', (part) => parts.push(part)).on('end', () => {
                if (stream.sizeExceeded) return done(new Error('too large'));
                received.push({ raw: Buffer.concat(parts).toString('latin1'), envelope: session.envelope });
                return done();
            });
        },
    });
    await new Promise((resolve) => { smtp.listen(0, '127.0.0.1', resolve); });
    t.after(() => smtp.close());
    const server = `smtp://localhost:${smtp.server.address().port}`;
    const answer = async (settings, fields) => {
        const running = await startSite({ server, user: 'shop', password: 'pä"ss', ca_file: cert, ...settings });
        try {
            return await post(running, '/mail.asp', { ...ordinary, ...fields });
        } finally {
            await running.stop();
        }
    };

    const body = '.\r\n..two\r\nend ü';
    assert.equal(await answer({}, { object: 1, cc: 'c@b.example', bcc: 'hidden@b.example', reply: 'r@b.example', subject: 'Grüße', body }), 'sent');
    const [{ raw, envelope }] = received.splice(0);
    assert.deepEqual([envelope.mailFrom.address, envelope.rcptTo.map(({ address }) => address)], ['shop@site.example', ['ann@site.example', 'c@b.example', 'hidden@b.example']]);
    assert.doesNotMatch(raw, /hidden/);
    const mail = await parse(raw);
    assert.deepEqual([mail.subject, mail.html.trimEnd()], ['Grüße', body.replaceAll('\r\n', '\n')]);

    assert.match(await answer({ password: 'wrong' }), /The mail server did not take the message/);
    assert.match(await answer({ ca_file: '/etc/hostname' }), /The mail server did not take the message/);
    assert.match(await answer({}, { to: 'nobody@b.example' }), /The mail server did not take the message/);
    assert.match(await answer({}, { body: 'x'.repeat(200_000) }), /The mail server did not take the message/);
    assert.match(await answer({ server: 'smtp://localhost:1' }), /The mail server did not take the message/);
    assert.equal(received.length, 0);
});

test('a password is not sent over a connection that is not encrypted', async (t) => {
    let asked = 0;
    const smtp = new SMTPServer({ disabledCommands: ['STARTTLS'], allowInsecureAuth: true, authOptional: true, onAuth: (login, session, done) => { asked += 1; done(null, { user: 1 }); } });
    await new Promise((resolve) => { smtp.listen(0, '127.0.0.1', resolve); });
    t.after(() => smtp.close());
    const server = `smtp://localhost:${smtp.server.address().port}`;
    for (const [settings, expected] of [[{ user: 'shop', password: 'x' }, /did not take/], [{ require_tls: false }, /^sent$/]]) {
        const running = await startSite({ server, ...settings });
        assert.match(await post(running, '/mail.asp', ordinary), expected);
        await running.stop();
    }
    assert.equal(asked, 0);
});
