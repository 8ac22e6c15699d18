// What the documentation shows is what the program does.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { program, root } from '../browser/server.mjs';

const read = (path) => readFileSync(join(root, path), 'utf8');
const blocks = (text, language) => [...text.matchAll(new RegExp(`^\`\`\`${language}\\n(.*?)^\`\`\``, 'gms'))].map(([, code]) => code);

test('the complete page of the README is the smallest page of the demo', () => {
    assert.equal(blocks(read('README.md'), 'asp')[0], read('site/demo/smallest.asp'));
});

test('every setting stands in the documentation and in the site with the same default', () => {
    const documented = [...read('docs/settings.md').matchAll(/^\| `(\w+)\.(\w+)` \| `(.*?)` \|/gm)]
        .map(([, , name, value]) => [name, value.replace(/", \.\.\.\]$/, '')]);
    const commented = new Map([...read('site/tabrixdb.toml').matchAll(/^#(\w+) = (.*?)(?:\s+#.*)?$/gm)].map(([, name, value]) => [name, value]));
    assert.deepEqual(documented.map(([name]) => name), [...commented.keys()]);
    for (const [name, value] of documented) assert.ok(commented.get(name).startsWith(value), name);
});

test('the first steps lead to a grid', (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    t.after(() => rmSync(folder, { recursive: true, force: true }));
    const steps = read('docs/getting-started.md');
    const site = join(folder, 'my-site');
    cpSync(join(root, 'site/TabrixDb'), join(folder, 'site/TabrixDb'), { recursive: true });
    execFileSync('bash', ['-euc', blocks(steps, 'sh').find((code) => code.includes('mkdir'))], { cwd: folder });

    const [page, templated] = blocks(steps, 'asp');
    const run = (text) => {
        writeFileSync(join(site, 'default.asp'), text);
        return execFileSync(program, ['run', join(site, 'default.asp')], { encoding: 'utf8', stdio: 'pipe' });
    };
    assert.match(run(page), /<b>Of tables and rows<\/b>.*<b>1998<\/b>.*<b>18\.5<\/b>/);
    writeFileSync(join(site, 'books.htm'), blocks(steps, 'html').find((code) => code.includes('content_start')));
    const html = run(page.replace('db.CreateGrid "books", "books"\n', templated));
    assert.match(html, /<tr><td>The patient query \(2004\)<\/td><td>24\.00<\/td><\/tr>/);
    assert.match(html, />Back<\/a> 1 \/ 1 <a /);
});

// Tables with the columns "Example" and "Gives", by the section that they stand in. A cell without code stands for the empty text.
function examples(text) {
    const cells = (line) => line.trim().split(/(?<=^|\s)\|(?=\s|$)/).slice(1, -1).map((cell) => cell.trim());
    const code = (cell) => cell.match(/^`(.*)`$/)?.[1] ?? '';
    const found = [];
    let section, columns;
    for (const line of text.split('\n')) {
        if (line.startsWith('## ')) section = line.slice(3);
        if (!line.startsWith('|')) columns = undefined;
        else if (!columns) columns = cells(line);
        else if (columns.includes('Gives') && !line.startsWith('|---')) {
            const row = cells(line);
            const example = code(row[columns.indexOf('Example')]);
            if (example) found.push({ section, example, gives: code(row[columns.indexOf('Gives')]) });
        }
    }
    return found;
}

test('every tag and control gives what its example says', (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    t.after(() => rmSync(folder, { recursive: true, force: true }));
    const text = read('docs/templates.md');
    cpSync(join(root, 'site/TabrixDb'), join(folder, 'TabrixDb'), { recursive: true });
    writeFileSync(join(folder, 'tabrixdb.toml'), '');
    execFileSync('sqlite3', [join(folder, 'shop.db')], { input: blocks(text, 'sql')[0] });
    const [setup, , script, nested] = blocks(text, 'asp');

    const row = (tags) => `<table><!--tabrixdb:content_start-->${tags}<!--tabrixdb:content_end--></table>`;
    const templates = {
        Rows: row,
        Captions: (tags) => `<table>${tags}${row('').slice('<table>'.length)}`,
        'Captions and footer': (tags) => row('').replace('</table>', `${tags}</table>`),
        Contents: () => row('#~note~#'),
        Controls: row,
    };
    const quoted = (value) => `"${value.replaceAll('"', '""')}"`;
    const all = examples(text);
    const shown = all.map(({ section, example }, i) => {
        writeFileSync(join(folder, `${i}.htm`), templates[section](example));
        return `Set db = Server.CreateObject("TabrixDb.Pro")\n${setup}\n${section === 'Contents' ? script : ''}
            ${section === 'Contents' ? `db.Source("items").Fields("note").Content = ${quoted(example)}` : ''}
            ${section === 'Controls' ? 'db.GridEditMode = "GRID"' : ''}
            db.CreateGrid "g", "items", Server.MapPath("${i}.htm")
            Response.Write db.Grid("g") & Chr(1)`;
    });
    const run = (code) => {
        writeFileSync(join(folder, 'items.asp'), `<%\n${code}\n%>`);
        return execFileSync(program, ['run', join(folder, 'items.asp'), '--query', 'day=1'], { encoding: 'utf8', stdio: 'pipe' });
    };
    const inside = (html) => html.match(/<table>(.*)<\/table>/s)[1].replace(/<!--.*?-->/g, '').replace(/\s+/g, ' ').trim();
    const written = run(shown.join('\n')).split('\x01');
    assert.deepEqual(all.map(({ example }, i) => ({ example, gives: inside(written[i]) })),
        all.map(({ example, gives }) => ({ example, gives })));

    // Every keyword of the engine has its row.
    const keywords = [...read('src/field/views.cpp').matchAll(/^ {4}\{"([A-Z_]+)", "[A-Z_]+", "([A-Z]*)"/gm)].map(([, word, sub]) => sub ? `${word};${sub}` : word);
    for (const keyword of keywords) assert.ok(text.includes(`| \`${keyword}\``) || text.includes(` \`${keyword}\` |`), keyword);

    writeFileSync(join(folder, 'lines.htm'), blocks(text, 'html')[0]);
    writeFileSync(join(folder, 'rows.htm'), row('#~note~#'));
    const html = run(`Set db = Server.CreateObject("TabrixDb.Pro")\n${setup}\n${nested}\ndb.CreateGrid "g", "items", Server.MapPath("rows.htm")\nResponse.Write db.Grid("g")`);
    assert.match(html, /Lines of 7:.*<b>Cup<\/b>.*<b>Pot<\/b>.*grid_navigate\('lines_1','next_page'\)/s);
});
