// A person browses the library, puts an album on now, sees it play, skips,
// seeks, changes the modes and the volume, and searches.
import assert from 'node:assert/strict';
import { scenario, row, menu, until } from './harness.mjs';

// Real time: the demo tracks last 8 s, long enough to watch one play.
scenario('browse the library, play an album now, skip, seek, modes, volume and search', { host: { timeScale: 1 }, shot: 'library-desktop-light' }, async ({ host, open }) => {
  const page = await open();
  // First useful paint: the home's rows, within a second of navigating.
  const painted = await page.waitForFunction(() => document.querySelector('.scroller .row:not(.placeholder)') && performance.now());
  assert.ok((await painted.jsonValue()) < 1000, `rows after ${await painted.jsonValue()} ms`);
  await page.getByRole('navigation', { name: 'Sources' }).getByRole('button', { name: 'Library' }).click();
  await row(page, 'Albums').getByRole('button').first().click();
  await row(page, 'Tuning Forks').click({ button: 'right' });
  await menu(page).getByRole('menuitem', { name: 'Add to play queue' }).click();
  await menu(page).getByRole('menuitem', { name: 'Now' }).click();
  await menu(page).waitFor({ state: 'hidden' });

  const bar = page.getByRole('region', { name: 'Now playing' });
  await bar.getByText('A Above Middle C').waitFor();
  await bar.getByText('Vexa Ensemble — Tuning Forks').waitFor();
  assert.match(await bar.locator('.art img').getAttribute('src'), /^\/files\/library\/[0-9a-f]+\.png$/);
  await bar.getByRole('button', { name: 'Next' }).click();
  await bar.getByText('Concert C').waitFor();

  // Paused, so that the track stays; dragging the progress bar to three
  // quarters seeks there.
  await bar.getByRole('button', { name: 'Pause' }).click();
  await until(async () => (await host.value('player:/status')).state === 'paused');
  await bar.getByRole('button', { name: 'Play' }).waitFor();
  const seek = bar.getByRole('slider', { name: 'Position' });
  const box = await seek.boundingBox();
  await page.mouse.move(box.x + 4, box.y + box.height / 2);
  await page.mouse.down();
  await page.mouse.move(box.x + box.width * 0.75, box.y + box.height / 2, { steps: 5 });
  await page.mouse.up();
  await until(async () => Math.abs((await host.value('player:/position')) - 6000) < 300);
  assert.equal((await host.value('player:/status')).track.title, 'Concert C');
  assert.equal(await bar.locator('#np-time').textContent(), '0:06');

  await bar.getByRole('button', { name: 'Shuffle' }).click();
  await until(async () => (await host.value('player:/playMode')) === 'shuffle');
  await bar.getByRole('button', { name: 'Repeat: off' }).click();
  await until(async () => (await host.value('player:/playMode')) === 'shuffleRepeatAll');
  assert.equal(await bar.getByRole('button', { name: 'Shuffle' }).getAttribute('aria-pressed'), 'true');
  await bar.getByRole('button', { name: 'Repeat: all' }).waitFor();

  const volume = bar.getByRole('slider', { name: 'Volume' });
  await volume.focus();
  await page.keyboard.press('Home');
  await until(async () => (await host.value('player:/volume')) === 0);
  await host.setData('player:/volume', { type: 'i32_', i32_: 35 });
  await until(async () => (await volume.inputValue()) === '35');

  // The playing track is marked in its list.
  await page.getByRole('navigation', { name: 'Sources' }).getByRole('button', { name: 'Playlists' }).click();
  await row(page, 'PlayQueue').getByRole('button').first().click();
  await row(page, 'Concert C').and(page.locator('[aria-current="true"]')).waitFor();

  // Search as you type: the answers follow the field.
  await page.getByRole('navigation', { name: 'Sources' }).getByRole('button', { name: 'Library' }).click();
  await page.getByPlaceholder('Search').pressSequentially('tun');
  await row(page, 'Tuning Forks').waitFor();
  assert.equal(await row(page, 'Hum').count(), 0);
  await page.keyboard.type(' fo');
  await row(page, 'Bright E').waitFor();
  await page.keyboard.press('Backspace');
  await page.keyboard.press('Backspace');
  await page.keyboard.press('Backspace');
  await page.keyboard.type('x');
  await page.getByText('Nothing here').waitFor();
  assert.equal(await page.getByRole('searchbox').inputValue(), 'tunx');
  await page.getByRole('searchbox').fill('deep');
  await row(page, 'Deep G').waitFor();
  assert.equal(await page.getByRole('searchbox').evaluate((el) => el === document.activeElement), true);
});
