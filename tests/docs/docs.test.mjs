// What the documentation shows is what the program does.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
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

test('a page of the demo shows no text of the database as HTML', (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    t.after(() => rmSync(folder, { recursive: true, force: true }));
    cpSync(join(root, 'site'), folder, { recursive: true, filter: (path) => !path.includes('shop.db') });
    const run = (page, form) => execFileSync(program, ['run', join(folder, 'demo', page), ...(form ? ['--form', new URLSearchParams(form).toString()] : [])],
        { encoding: 'utf8', stdio: 'pipe' });
    run('default.asp');
    const database = (input) => execFileSync('sqlite3', [join(folder, 'demo/data/shop.db')], { encoding: 'utf8', input });
    database(database(`select 'pragma ignore_check_constraints = on;' union all
        select 'update ' || tables.name || ' set ' || columns.name || ' = ''<i>"'' || ' || columns.name || ';'
        from sqlite_master tables join pragma_table_info(tables.name) columns where tables.type = 'table' and (columns.type like '%char%' or columns.type = 'text')`));

    const command = (grid, word, params = '') => ({ [`${grid}_command`]: word, [`${grid}_params`]: params });
    const others = ['default.asp', 'error.asp', 'mail.asp', 'sales.asp'];  // they show no text of the database
    for (const [page, form] of [
        ...readdirSync(join(root, 'site/demo')).filter((file) => file.endsWith('.asp') && !others.includes(file)).map((file) => [file]),
        ['controls.asp', command('workshops', 'edit_grid', 'workshops;edit;0')],
        ['order.asp', command('sales', 'grid_offset', '1')],
        ['prices.asp', command('pricing', 'edit_source', 'pricing;edit')],
        ['search.asp', command('catalogue_list', 'filter_grid_source')],
        ['staff.asp', command('staff', 'edit_source', 'staff;edit')],
    ]) {
        const html = run(page, form);
        assert.match(html, /&lt;i(>|&gt;)/, page);
        assert.doesNotMatch(html, page === 'smallest.asp' ? /<i>/ : /<i>|i>"/, page);
    }
    assert.match(run('order.asp', command('sales', 'grid_offset', '1')), /<form[^>]*"sale_lines"/);
});

/** The site of the first steps in a folder of its own: write(page) sets its page, run(options) gives what that writes. */
function firstSteps(t) {
    const folder = mkdtempSync(join(tmpdir(), 'tabrixdb-'));
    t.after(() => rmSync(folder, { recursive: true, force: true }));
    const steps = read('docs/getting-started.md');
    const site = join(folder, 'my-site');
    cpSync(join(root, 'site/TabrixDb'), join(folder, 'site/TabrixDb'), { recursive: true });
    execFileSync('bash', ['-euc', blocks(steps, 'sh').find((code) => code.includes('mkdir'))], { cwd: folder });
    return {
        site,
        steps,
        write: (text) => writeFileSync(join(site, 'default.asp'), text),
        run: (...options) => execFileSync(program, ['run', join(site, 'default.asp'), ...options], { encoding: 'utf8', stdio: 'pipe' }),
    };
}

test('the first steps lead to a grid', (t) => {
    const { site, steps, write, run } = firstSteps(t);
    const [page, templated] = blocks(steps, 'asp');
    write(page);
    run();
    execFileSync('sqlite3', [join(site, 'data/library.db'), "insert into books (title) values ('<script>&amp;')"]);
    assert.match(run(), /<b>&lt;script>&amp;amp;<\/b>/);
    assert.match(run(), /<b>Of tables and rows<\/b>.*<b>1998<\/b>.*<b>18\.5<\/b>/);
    writeFileSync(join(site, 'books.htm'), blocks(steps, 'html').find((code) => code.includes('content_start')));
    write(page.replace('db.CreateGrid "books", "books"\n', templated));
    const html = run();
    assert.match(html, /<tr><td>The patient query \(2004\)<\/td><td>24\.00<\/td><\/tr>/);
    assert.match(html, />Back<\/a> 1 \/ 1 <a /);
});

test('the grids of the documentation edit, search, feed each other and are fast', (t) => {
    const { site, steps, write, run } = firstSteps(t);
    const text = read('docs/grids.md');
    const code = (start) => blocks(text, 'asp').find((block) => block.includes(start));
    const template = (name, sign) => writeFileSync(join(site, name), blocks(text, 'html').find((block) => block.includes(sign)));
    template('editing.htm', 'btn_edit_row');
    template('filter.htm', 'title_operator');
    writeFileSync(join(site, 'list.htm'), '<table><!--tabrixdb:content_start-->#~record_pointer_list~#<!--tabrixdb:content_end--></table>');
    writeFileSync(join(site, 'form.htm'), '<table><!--tabrixdb:content_start-->#~title~#, #~year~#<!--tabrixdb:content_end--></table>');
    const connection = blocks(steps, 'asp')[0].match(/^Set db[\s\S]*?(?=^db\.CreateSource)/m)[0];
    write(`<%\n${connection}${code('"editing"')}${code('CreateFilter')}${code('"book", "list"')}${code('CreateFastGrid')}
        Response.Write db.Grid("editing") & db.Grid("book")\n%>`);
    const post = (fields) => run('--form', new URLSearchParams(fields).toString());
    const stored = () => execFileSync('sqlite3', [join(site, 'data/library.db'), 'select id, title, price from books'], { encoding: 'utf8' }).trim().split('\n');
    const shown = (html) => html.match(/name="editing_shown" value="(.*?)"/)[1];

    const first = run();
    assert.match(first, /<table><tr>\s*<th>\s*<\/th>\s*<th>\s*title<\/th>[\s\S]*Joins in the rain[\s\S]*The patient query/);
    assert.match(first, /<SELECT name='title_operator' ><option SELECTED value='LIKE'>[\s\S]*name="title" [\s\S]*name='year_andor'/);
    assert.match(first, /Of tables and rows, 1998/);
    assert.match(post({ list_command: 'grid_offset', list_params: '2' }), /Joins in the rain, 2011/);

    const editing = post({ editing_command: 'edit_grid', editing_params: 'editing;edit;1' });
    assert.match(editing, /name="title_2" value="The patient query" size=30\s+MaxLength="80"/);
    const save = { editing_command: 'edit_grid', editing_params: 'editing;update;1', editing_shown: shown(editing), title_2: 'The query' };
    assert.match(post({ ...save, price_2: 'cheap' }), /Nothing was saved\. price: &quot;cheap&quot; is not a number/);
    post({ ...save, price_2: '25.5' });
    assert.match(post({ ...save, price_2: '1' }), /somebody else has changed this record/);
    const adding = post({ editing_command: 'edit_source', editing_params: 'editing;add' });
    post({ editing_command: 'edit_source', editing_params: 'editing;addnew', editing_shown: shown(adding), title: 'New', price: '' });
    assert.deepEqual(stored(), ['1|Of tables and rows|18.5', '2|The query|25.5', '3|Joins in the rain|21.75', '4|New|']);
    const script = post({ ...save, editing_params: 'editing;update;3', editing_shown: shown(post({ editing_command: 'edit_grid', editing_params: 'editing;edit;3' })), title_4: '<script>&amp;' });
    assert.equal(stored()[3], '4|<script>&amp;|');
    assert.equal(script.match(/&lt;script>&amp;amp;/g).length, 1);
    assert.doesNotMatch(script, /<script>&/);

    const found = post({ shelf_command: 'filter_source', title: '%the%', title_operator: 'LIKE', year: '2010', year_operator: '>', year_andor: 'And' });
    assert.equal(found.match(/edit_grid\(\d+, 'editing','edit'\)/g).length, 1);
    assert.match(found, /Joins in the rain, 2011/);
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
