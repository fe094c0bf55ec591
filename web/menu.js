// A row's context menu: the rows of its menu path, with choosers that open
// further menus on top. An entry sets data on its path; an answer that
// carries a close event ends the menu, an error shows beside the entry.
import { h, icon } from './dom.js';
import { rows as fetchRows, setData, closesMenu } from './api.js';
import { watch } from './live.js';
import { t } from './words.js';
import { typeOf, switchInput, textInput } from './rows.js';

const MAX_ROWS = 1000;
const PAGE = 200;

export class Menu {
  constructor() {
    this.stack = [];
    this.title = h('h2', { class: 'menu-title', id: 'menu-title', dir: 'auto' });
    this.backButton = h('button', { type: 'button', class: 'icon-button', 'data-t-label': 'back', 'aria-label': t('back'), onclick: () => this.back() }, icon('back'));
    this.list = h('div', { role: 'menu', class: 'menu-list', 'aria-labelledby': 'menu-title' });
    this.list.addEventListener('keydown', (e) => this.onKey(e));
    this.dialog = h(
      'dialog',
      { class: 'menu', 'aria-labelledby': 'menu-title' },
      h('div', { class: 'menu-head' }, this.backButton, this.title, h('button', { type: 'button', class: 'icon-button', 'data-t-label': 'close', 'aria-label': t('close'), onclick: () => this.close() }, icon('close'))),
      this.list
    );
    this.dialog.addEventListener('cancel', (e) => {
      e.preventDefault();
      this.close();
    });
    // A press outside the panel lands on the dialog itself. Only a press
    // that began there closes it: the release of the long press that opened
    // the menu lands there too.
    this.dialog.addEventListener('pointerdown', (e) => (this.pressedOutside = e.target === this.dialog));
    this.dialog.addEventListener('click', (e) => e.target === this.dialog && this.pressedOutside && this.close());
    document.body.append(this.dialog);
  }

  isOpen() {
    return this.dialog.open;
  }

  // context: the row's context roles; anchor: the element or pointer event
  // it was asked for from.
  open(context, anchor) {
    if (!context || !context.path) return;
    // A long press on a touch screen is also a contextmenu event.
    if (this.isOpen() && this.stack[0] && this.stack[0].path === context.path) return;
    if (this.isOpen()) this.close();
    this.returnFocus = document.activeElement;
    this.anchor = anchor;
    this.stack = [];
    this.dialog.showModal();
    this.push({ path: context.path, title: context.title });
  }

  push(entry) {
    this.stack.push(entry);
    this.show();
  }

  back() {
    if (this.stack.length > 1) {
      this.stack.pop();
      this.show();
    } else {
      this.close();
    }
  }

  close() {
    if (this.unwatch) this.unwatch();
    this.unwatch = null;
    this.stack = [];
    if (this.dialog.open) this.dialog.close();
    if (this.returnFocus && this.returnFocus.isConnected) this.returnFocus.focus();
  }

  async show() {
    const top = this.stack[this.stack.length - 1];
    if (this.unwatch) this.unwatch();
    this.unwatch = null;
    this.backButton.hidden = this.stack.length < 2;
    this.title.textContent = top.title || '';
    this.list.replaceChildren(h('p', { class: 'status', text: t('loading') }));
    const unwatch = await watch('rows', top.path, () => this.reload(false, true));
    if (this.stack[this.stack.length - 1] !== top) return unwatch();
    this.unwatch = unwatch;
    await this.reload(true);
  }

  // Every entry of the menu: menus are short, and a chooser of playlists
  // stays well below the cap. keepTyped: a change made elsewhere leaves what
  // someone is typing as it is.
  async reload(first, keepTyped) {
    const top = this.stack[this.stack.length - 1];
    if (!top) return;
    let rows = [];
    let answer;
    try {
      do {
        answer = await fetchRows(top.path, rows.length, rows.length + PAGE - 1);
        rows = rows.concat(answer.rows || []);
      } while ((answer.rows || []).length && rows.length < Math.min(answer.rowsCount, MAX_ROWS));
    } catch (error) {
      if (top === this.stack[this.stack.length - 1]) this.list.replaceChildren(h('p', { class: 'menu-error', role: 'alert', dir: 'auto', text: error.message }));
      return;
    }
    if (top !== this.stack[this.stack.length - 1]) return;
    if (answer.title) this.title.textContent = top.title = answer.title;
    const active = document.activeElement;
    const focused = [...this.list.querySelectorAll('.entry')].findIndex((el) => el.contains(active));
    this.list.replaceChildren(...rows.map((row) => this.entry(row)));
    const entries = this.list.querySelectorAll('.entry');
    const target = entries[focused >= 0 ? focused : 0];
    if (target && (first || focused >= 0)) {
      const field = focusIn(target);
      if (keepTyped && focused >= 0 && active.tagName === 'INPUT' && field.tagName === 'INPUT') field.value = active.value;
      field.focus();
    }
    if (first) this.place();
  }

  entry(row) {
    const type = typeOf(row);
    const run = (value, el) => this.run(row, value, el);
    let el;
    if (type === 'separator') return h('div', { role: 'separator', class: 'separator' });
    if (type === 'header') return h('div', { role: 'presentation', class: 'menu-header', dir: 'auto', text: row.title ?? '' });
    if (type === 'input' && row.value && row.value.type === 'bool_') {
      el = switchInput(row, run, 'menuitemcheckbox');
    } else if (type === 'input') {
      el = h('div', { role: 'none' }, textInput(row, { onSubmit: run }));
    } else {
      const opens = type === 'container';
      el = h(
        'button',
        {
          type: 'button',
          role: 'menuitem',
          'aria-haspopup': opens ? 'menu' : null,
          onclick: () => (opens ? this.push({ path: row.path, title: row.title }) : run(null, el)),
        },
        h('span', { class: 'title', dir: 'auto', text: row.title ?? '' }),
        opens ? icon('chevron') : null
      );
    }
    el.classList.add('entry');
    return el;
  }

  async run(row, value, el) {
    for (const old of this.list.querySelectorAll('.menu-error')) old.remove();
    const entry = el.closest('.entry') || el;
    try {
      const answer = await setData(row.path, value);
      if (closesMenu(answer)) this.close();
      else await this.reload();
    } catch (error) {
      entry.after(h('p', { class: 'menu-error', role: 'alert', dir: 'auto', text: error.message }));
    }
  }

  // Beside what opened it on a wide screen; phones show a sheet from below
  // (the style sheet takes over there).
  place() {
    const box = this.dialog.getBoundingClientRect();
    let x = innerWidth / 2 - box.width / 2;
    let y = innerHeight / 2 - box.height / 2;
    const a = this.anchor;
    if (a && a.clientX !== undefined) {
      x = a.clientX;
      y = a.clientY;
    } else if (a && a.getBoundingClientRect) {
      const r = a.getBoundingClientRect();
      x = r.right - box.width;
      y = r.bottom;
    }
    this.dialog.style.left = Math.max(8, Math.min(x, innerWidth - box.width - 8)) + 'px';
    this.dialog.style.top = Math.max(8, Math.min(y, innerHeight - box.height - 8)) + 'px';
  }

  onKey(e) {
    if (e.target.tagName === 'INPUT' && e.key !== 'ArrowUp' && e.key !== 'ArrowDown') return;
    const entries = [...this.list.querySelectorAll('.entry')];
    const at = entries.findIndex((el) => el.contains(e.target));
    const step = { ArrowDown: 1, ArrowUp: -1 }[e.key];
    if (step) {
      focusIn(entries[(at + step + entries.length) % entries.length]).focus();
    } else if (e.key === 'Home' || e.key === 'End') {
      focusIn(entries[e.key === 'Home' ? 0 : entries.length - 1]).focus();
    } else if (e.key === 'ArrowLeft' || e.key === 'Backspace') {
      this.back();
    } else {
      return;
    }
    e.preventDefault();
  }
}

function focusIn(entry) {
  return entry.matches('button') ? entry : entry.querySelector('input, button') || entry;
}
