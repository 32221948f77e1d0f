<?php
// News of the Society: the newest five, or one by its number.
require_once 'inc/news.inc';
$MaxItems = 5;
$Items = NewsItems($MaxItems, isset($_GET['n']) ? (int)$_GET['n'] : 0);
$Title = count($Items) > 0 ? $Items[0]->Title : "No news";
?>
<!DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 4.01 Transitional//EN">
<html<?php if ($Lang) echo " lang=\"$Lang\""; ?>>
<head>
<title><?= htmlspecialchars($Title) ?> - Hollowmere news</title>
<meta http-equiv="Content-Type" content="text/html; charset=utf-8">
<link rel="stylesheet" type="text/css" href="<?php echo $Style ? $Style : 'hollowmere.css'; ?>">
<style type="text/css">
.item { border-left: <?= $Border ?>px solid #2a5f1a; padding-left: 8px }
</style>
<script type="text/javascript">
var items = <?php echo json_encode($Items); ?>;
for (var i = 0; i < items.length && i < <?= $MaxItems ?>; i++) { window.status = "Item " + i + " -> " + items[i]; }
</script>
</head>
<body bgcolor="<?= $Night ? "#202820" : "#f4f7ec" ?>" <?php if ($Night) { ?>text="#e0e8d0"<?php } ?>>
<h1><?= htmlspecialchars($Title) ?></h1>
<p>What goes on between the railway and the brook. Written down by whoever was there.</p>

<table width="100%" border="0">
<?php foreach ($Items as $Item): ?>
<tr class="<?= $Item->Age > 30 ? 'late' : 'fresh' ?>">
  <td valign="top" nowrap><?= date('j M', $Item->Date) ?></td>
  <td><div class="item"><b><?= $Item->Title ?></b><br><?= $Item->Text ?></div></td>
</tr>
<?php endforeach; ?>
</table>

<form action="news.php" method="get">
<select name="n">
<?php for ($i = 1; $i <= 12; ++$i) { ?>
<option value="<?= $i ?>"<?php if ($i == $Month) print ' selected'; ?>><?= $Months[$i] ?></option>
<?php } ?>
</select>
<input type="text" name="q" value="<?= htmlspecialchars($_GET['q']) ?>" <?= $Focus ?>>
<textarea name="note" rows="2" cols="30"><?php
  // a note that was begun comes back
  if (isset($_POST['note'])) { echo $_POST['note']; }
?></textarea>
<input type="submit" value="Show">
</form>

<?php if ($Items && $Items[0]->Pictures > 0) { ?>
<p><img src="images/<?= $Items[0]->Picture ?>" alt="<?= $Items[0]->Title ?>" width=<?= $Width ?> height=160> A picture.</p>
<?php } else { ?>
<p>No picture this time: the camera is in the brook.</p>
<?php } ?>
<p><a href="index.htm">Start</a> <!-- served in <?= $Seconds ?> s --></p>
</body>
</html>
<?php CloseNews(); // nothing after this ?>
