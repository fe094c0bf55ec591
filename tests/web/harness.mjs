// What every browser test stands on: the real vexa-host with the playlists
// and library modules on a generated music folder and the emulated player,
// Debian's chromium driven by playwright-core, and a screenshot of the end.
import { spawn, execFileSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { closeSync, mkdtempSync, mkdirSync, openSync, readFileSync, rmSync } from 'node:fs';
import net from 'node:net';
import os from 'node:os';
import path from 'node:path';
import assert from 'node:assert/strict';
import test from 'node:test';

const env = (name) => {
  assert.ok(process.env[name], `${name} is set by CTest`);
  return process.env[name];
};
// A program of the build as a command: through the emulator in a cross build.
const program = (name, args) => {
  const emulator = (process.env.VEXA_EMULATOR ?? '').split(' ').filter(Boolean);
  return [...emulator, env(name), ...args];
};
const { chromium } = createRequire(path.join(env('VEXA_WEB_TEST_DIR'), 'package.json'))('playwright-core');

function freePort() {
  return new Promise((resolve, reject) => {
    const server = net.createServer().listen(0, '127.0.0.1', () => {
      const { port } = server.address();
      server.close(() => resolve(port));
    });
    server.on('error', reject);
  });
}

export class Host {
  constructor({ timeScale = 1000, args = [] } = {}) {
    this.root = mkdtempSync(path.join(os.tmpdir(), 'vexa-web-'));
    this.args = ['--time-scale', String(timeScale), ...args];
    const [demo, ...demoArgs] = program('VEXA_DEMO_MUSIC', [path.join(this.root, 'music')]);
    execFileSync(demo, demoArgs, { stdio: 'ignore' });
  }

  get url() {
    return `http://127.0.0.1:${this.port}/`;
  }

  async start() {
    this.port ??= await freePort();
    const log = openSync(path.join(this.root, 'host.log'), 'a');
    const [host, ...hostArgs] = program('VEXA_HOST_BINARY', [
      '--root', this.root, '--listen', `127.0.0.1:${this.port}`, '--modules', env('VEXA_MODULES_DIR'), ...this.args,
    ]);
    this.process = spawn(host, hostArgs, { stdio: ['ignore', log, log] });
    closeSync(log);
    this.exited = new Promise((resolve) => this.process.once('exit', resolve));
    // Ready once the library's first scan found the demo tracks.
    await until(async () => {
      const scan = await this.value('library:/scan').catch(() => ({}));
      return scan.state === 'idle' && scan.tracks > 0;
    }, 20000);
    return this;
  }

  async stop() {
    this.process.kill('SIGTERM');
    await this.exited;
  }

  async call(method, target, body) {
    const response = await fetch(new URL(target, this.url), { method, body: body && JSON.stringify(body) });
    const json = await response.json();
    if (!response.ok) throw new Error(`${method} ${target}: ${response.status} ${JSON.stringify(json)}`);
    return json;
  }

  rows(p, roles = 'title', from = 0, to = 999) {
    return this.call('GET', '/api/v1/rows?' + new URLSearchParams({ path: p, roles, from, to }));
  }

  async titles(p) {
    return (await this.rows(p)).rows.map((r) => r[0]);
  }

  async value(p) {
    const v = (await this.call('GET', '/api/v1/data?' + new URLSearchParams({ path: p, roles: 'value' }))).value;
    return v && v.type ? v[v.type] : v;
  }

  setData(p, value) {
    return this.call('POST', '/api/v1/data', { path: p, value });
  }

  // Tracks that need no files: title, uri and a duration in seconds.
  addTracks(plid, titles, duration = 240) {
    const items = titles.map((title, i) => ({
      vexaRoles: JSON.stringify({ title, type: 'audio', mediaData: { resources: [{ uri: `http://music.example/${i}.mp3`, duration }] } }),
    }));
    return this.setData('playlists:/add-external-items', { plid, mode: 'append', items });
  }
}

export async function until(check, timeoutMs = 5000) {
  const end = Date.now() + timeoutMs;
  for (;;) {
    const last = await check();
    if (last) return last;
    if (Date.now() > end) assert.fail(`still not so after ${timeoutMs} ms`);
    await new Promise((r) => setTimeout(r, 50));
  }
}

// A page of the app as a person on a phone or at a desktop sees it; errors
// thrown in the page fail the test that opened it.
export async function openApp(browser, host, { phone = false, dark = false, hash = '' } = {}) {
  const context = await browser.newContext({
    viewport: phone ? { width: 390, height: 780 } : { width: 1280, height: 800 },
    hasTouch: phone,
    colorScheme: dark ? 'dark' : 'light',
  });
  const page = await context.newPage();
  page.setDefaultTimeout(10000);
  page.errors = [];
  page.on('pageerror', (e) => page.errors.push(e.message));
  await page.goto(host.url + hash);
  await page.locator('#crumbs li').first().waitFor();
  return page;
}

// One person's task: a host, a browser, and the pages the task opens
// (openApp); the screenshot of the first page is taken at the end, failed
// or not, and errors thrown in any page fail the task.
export function scenario(name, { host: hostOptions, ...pageOptions }, task) {
  test(name, { timeout: 120000 }, async () => {
    const host = await new Host(hostOptions).start();
    const browser = await chromium.launch({
      executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
      args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'],
    });
    const pages = [];
    const open = async (options) => {
      pages.push(await openApp(browser, host, { ...pageOptions, ...options }));
      return pages[pages.length - 1];
    };
    let failed = true;
    try {
      await task({ host, open });
      failed = false;
    } finally {
      if (pages[0]) {
        const dir = env('VEXA_SCREENSHOT_DIR');
        mkdirSync(dir, { recursive: true });
        rmSync(path.join(dir, `${pageOptions.shot}-failed.png`), { force: true });
        await pages[0].screenshot({ path: path.join(dir, `${pageOptions.shot}${failed ? '-failed' : ''}.png`) }).catch(() => {});
      }
      await browser.close();
      await host.stop();
      if (failed) process.stderr.write(readFileSync(path.join(host.root, 'host.log'), 'utf8').split('\n').slice(-40).join('\n'));
      rmSync(host.root, { recursive: true, force: true });
    }
    assert.deepEqual(pages.flatMap((p) => p.errors), []);
  });
}

// The rows of the list shown, as their titles, in order.
export function shownTitles(page) {
  return page.$$eval('.scroller .row:not(.placeholder)', (rows) =>
    rows.sort((a, b) => a.dataset.index - b.dataset.index).map((r) => (r.querySelector('.title, .heading') || {}).textContent)
  );
}

export const row = (page, title) => page.locator('.scroller .row').filter({ has: page.getByText(title, { exact: true }) });
export const menu = (page) => page.locator('dialog.menu');
