#!/bin/sh
# Draws the product pictures of the sample database and writes demo/shop/3-pictures.sql. Every
# picture is a few coloured shapes; most become PNG, some GIF and JPEG, so that a blob editor
# meets all three. Needs nothing but perl. Run it after a change of the drawings below.
set -eu
cd "$(dirname "$0")/.."
target=demo/shop/3-pictures.sql

perl - > "$target.new" <<'PERL'
use strict;
use warnings;
use Compress::Zlib qw(compress crc32);

my $SIZE = 64;    # pixels a side; the drawings use the same unit
my $FINE = 3;     # samples a side of each pixel

# sku, format, background, shapes from back to front
my @pictures = (
    ['CUP-001', 'png',  'fff4e0', [ring => 'c0392b', 46, 34, 11, 4],
        [rect => 'c0392b', 14, 18, 46, 50], [ellipse => '7b241c', 30, 18, 16, 5],
        [line => 'bdc3c7', 24, 10, 27, 4, 2], [line => 'bdc3c7', 33, 10, 36, 4, 2]],
    ['CUP-002', 'png',  'e8eef8', [ring => '1f4e8c', 46, 34, 11, 4],
        [rect => '1f4e8c', 14, 18, 46, 50], [ellipse => '12305a', 30, 18, 16, 5],
        [circle => 'f7dc6f', 28, 34, 7], [circle => '1f4e8c', 31, 32, 6]],
    ['CUP-003', 'jpeg', 'f3efe6', [ellipse => '6b7f3a', 32, 34, 24, 20],
        [rect => 'f3efe6', 0, 0, 64, 30], [ellipse => '51602b', 32, 30, 24, 6],
        [ellipse => '9cb45c', 32, 31, 19, 4], [rect => '51602b', 24, 53, 40, 57]],
    ['CUP-004', 'png',  '23313f', [poly => 'aed6f1', 18, 8, 46, 8, 41, 54, 23, 54],
        [poly => '5dade2', 20, 26, 44, 26, 41, 52, 23, 52],
        [line => 'ffffff', 24, 12, 27, 48, 2], [rect => 'd6eaf8', 22, 52, 42, 57]],
    ['TEA-001', 'gif',  'fdfefe', [rect => '117a65', 16, 14, 48, 56], [rect => '0b5345', 14, 8, 50, 16],
        [circle => 'ffffff', 32, 30, 4], [circle => 'ffffff', 27, 36, 4],
        [circle => 'ffffff', 37, 36, 4], [circle => 'f4d03f', 32, 35, 3]],
    ['TEA-004', 'png',  'f9f6e7', [rect => '556b2f', 24, 22, 40, 58], [rect => '556b2f', 29, 8, 35, 24],
        [rect => '2c2c2c', 28, 5, 36, 11], [rect => 'f5e6a8', 24, 34, 40, 48],
        [ellipse => '6b8e23', 32, 41, 4, 5]],
    ['LMP-001', 'png',  '2c3e50', [poly => 'f9e79f', 12, 58, 24, 24, 40, 30, 60, 58],
        [line => 'f1c40f', 30, 56, 20, 36, 3], [line => 'f1c40f', 20, 36, 30, 18, 3],
        [poly => 'f1c40f', 24, 20, 36, 12, 44, 28, 26, 30], [rect => 'd4ac0d', 20, 55, 42, 59]],
    ['LMP-003', 'png',  '1c1c2b', [circle => '4a3b2a', 32, 18, 17], [rect => 'fdf2d0', 24, 28, 40, 58],
        [line => '3b3b3b', 32, 28, 32, 22, 2], [ellipse => 'f39c12', 32, 16, 5, 9],
        [ellipse => 'fef9e7', 32, 19, 2, 5]],
    ['LMP-004', 'gif',  '101935', [circle => 'f7f1c6', 30, 32, 20], [circle => '101935', 39, 27, 17],
        [circle => 'ffffff', 50, 14, 2], [circle => 'ffffff', 54, 44, 1.5],
        [circle => 'ffffff', 12, 10, 1.5]],
    ['FRN-001', 'png',  'f2e9dc', [line => '8e5a2b', 20, 36, 16, 60, 3], [line => '8e5a2b', 44, 36, 48, 60, 3],
        [ring => '8e5a2b', 32, 18, 13, 3], [line => '8e5a2b', 21, 22, 21, 36, 3],
        [line => '8e5a2b', 43, 22, 43, 36, 3], [ellipse => 'b9773e', 32, 37, 15, 4]],
    ['FRN-003', 'png',  'eef2f3', [rect => '9c640c', 12, 6, 52, 58], [rect => 'f5e0bd', 15, 9, 49, 22],
        [rect => 'f5e0bd', 15, 25, 49, 38], [rect => 'f5e0bd', 15, 41, 49, 55],
        [rect => 'c0392b', 17, 11, 21, 22], [rect => '2874a6', 22, 13, 27, 22],
        [rect => '239b56', 36, 28, 40, 38], [rect => '7d3c98', 41, 27, 45, 38],
        [rect => 'd68910', 18, 44, 24, 55]],
    ['CLK-001', 'png',  'd5dbdb', [circle => '34495e', 32, 32, 27], [circle => 'ffffff', 32, 32, 23],
        [line => '34495e', 32, 32, 32, 15, 3], [line => '34495e', 32, 32, 44, 38, 3],
        [line => 'c0392b', 32, 36, 24, 14, 1], [circle => 'c0392b', 32, 32, 2.5]],
    ['CLK-003', 'png',  'fbf5ef', [poly => 'd6eaf8', 18, 10, 46, 10, 33, 32, 46, 54, 18, 54, 31, 32],
        [poly => 'e0b050', 24, 20, 40, 20, 32, 33], [poly => 'e0b050', 22, 54, 42, 54, 32, 44],
        [rect => '6e4b2a', 14, 5, 50, 10], [rect => '6e4b2a', 14, 54, 50, 59]],
    ['GRD-001', 'jpeg', 'eaf6e6', [line => '2e7d32', 32, 60, 32, 30, 3],
        [ellipse => '388e3c', 22, 46, 9, 4], [ellipse => '388e3c', 42, 50, 9, 4],
        [circle => 'c2185b', 32, 22, 15], [circle => 'e91e63', 29, 20, 10],
        [circle => 'f48fb1', 31, 21, 5]],
    ['GRD-002', 'png',  'aed6f1', [line => '27ae60', 32, 64, 32, 32, 4], [ellipse => '27ae60', 24, 52, 9, 3],
        (map { [circle => 'f4c20d', 32 + 15 * cos($_ * 0.5236), 24 + 15 * sin($_ * 0.5236), 6] } 0 .. 11),
        [circle => '6e3b1f', 32, 24, 11]],
    ['TLS-002', 'png',  'f4f6f6', [ring => '1e8449', 40, 24, 13, 3],
        [poly => '27ae60', 24, 26, 52, 26, 54, 56, 22, 56],
        [poly => '27ae60', 24, 40, 8, 18, 12, 16, 26, 34], [line => '1e8449', 4, 20, 14, 12, 4]],
    ['TLS-003', 'gif',  'e5e8e8', [line => '5d4037', 32, 12, 32, 54, 2], [ring => '5d4037', 28, 53, 5, 2],
        [circle => 'e74c3c', 32, 34, 27], [ellipse => 'f1c40f', 32, 34, 18, 27],
        [ellipse => '2e86c1', 32, 34, 8, 27], [rect => 'e5e8e8', 0, 34, 64, 64],
        [line => '5d4037', 32, 32, 32, 54, 2], [ring => '5d4037', 28, 54, 5, 2],
        [rect => 'e5e8e8', 22, 46, 30.5, 53]],
    ['GAM-002', 'png',  'e3b96a', (map { [line => '7a5a22', 8, $_, 56, $_, 1] } 8, 20, 32, 44, 56),
        (map { [line => '7a5a22', $_, 8, $_, 56, 1] } 8, 20, 32, 44, 56),
        [circle => '111111', 20, 20, 6], [circle => 'ffffff', 32, 20, 6],
        [circle => '111111', 32, 32, 6], [circle => 'ffffff', 44, 44, 6],
        [circle => '111111', 20, 44, 6]],
    ['GAM-003', 'png',  'd6f5d6', [ellipse => '8fbf8f', 34, 58, 20, 4], [circle => 'e74c3c', 32, 32, 24],
        [ellipse => 'ffffff', 32, 32, 10, 24], [circle => 'c0392b', 32, 32, 5]],
    ['GAM-004', 'png',  '85c1e9', [line => 'ffffff', 34, 38, 12, 62, 1],
        [poly => 'e74c3c', 40, 4, 56, 22, 34, 40, 26, 18], [poly => 'f1c40f', 40, 4, 41, 22, 26, 18],
        [poly => 'f1c40f', 56, 22, 34, 40, 41, 22], [circle => 'ffffff', 14, 12, 5],
        [circle => 'ffffff', 20, 12, 6]],
    ['MUS-003', 'png',  'fdf3e7', [rect => 'b03a2e', 10, 24, 54, 50], [ellipse => 'b03a2e', 32, 50, 22, 7],
        [ellipse => 'fdfefe', 32, 24, 22, 7], [line => 'f4d03f', 12, 30, 24, 53, 2],
        [line => 'f4d03f', 24, 53, 36, 31, 2], [line => 'f4d03f', 36, 31, 50, 52, 2],
        [line => '6e4b2a', 22, 22, 6, 4, 2], [line => '6e4b2a', 42, 22, 60, 6, 2]],
    ['BOK-001', 'png',  'eceff1', [rect => '37474f', 14, 6, 52, 58], [rect => 'fffbe6', 18, 9, 50, 55],
        (map { [line => 'b0bec5', 22, 14 + 6 * $_, 46, 14 + 6 * $_, 1] } 0 .. 6),
        [rect => 'c62828', 40, 6, 44, 30]],
);

my %inside = (
    circle  => sub { my ($x, $y, $cx, $cy, $r) = @_; ($x - $cx)**2 + ($y - $cy)**2 <= $r**2 },
    ellipse => sub { my ($x, $y, $cx, $cy, $rx, $ry) = @_;
                     (($x - $cx) / $rx)**2 + (($y - $cy) / $ry)**2 <= 1 },
    rect    => sub { my ($x, $y, $l, $t, $r, $b) = @_; $x >= $l && $x <= $r && $y >= $t && $y <= $b },
    ring    => sub { my ($x, $y, $cx, $cy, $r, $w) = @_;
                     abs(sqrt(($x - $cx)**2 + ($y - $cy)**2) - $r) <= $w / 2 },
    line    => sub { my ($x, $y, $x1, $y1, $x2, $y2, $w) = @_;
                     my ($dx, $dy) = ($x2 - $x1, $y2 - $y1);
                     my $t = (($x - $x1) * $dx + ($y - $y1) * $dy) / ($dx**2 + $dy**2);
                     $t = $t < 0 ? 0 : $t > 1 ? 1 : $t;
                     ($x - $x1 - $t * $dx)**2 + ($y - $y1 - $t * $dy)**2 <= $w**2 / 4 },
    poly    => sub { my ($x, $y, @p) = @_;
                     my $in = 0;
                     for (my $i = 0; $i < @p; $i += 2) {
                         my ($x1, $y1, $x2, $y2) = @p[map { $_ % @p } $i .. $i + 3];
                         next if ($y1 > $y) == ($y2 > $y);
                         $in = !$in if $x < ($x2 - $x1) * ($y - $y1) / ($y2 - $y1) + $x1;
                     }
                     $in },
);

sub rgb { map { hex } $_[0] =~ /../g }

# Rows of [r, g, b] pixels.
sub draw {
    my ($background, @shapes) = @_;
    my @layers = map { my ($kind, $colour, @rest) = @$_; [$inside{$kind}, [rgb($colour)], @rest] }
        reverse @shapes;
    my @ground = rgb($background);
    my @rows;
    for my $py (0 .. $SIZE - 1) {
        for my $px (0 .. $SIZE - 1) {
            my @sum = (0, 0, 0);
            for my $sample (0 .. $FINE**2 - 1) {
                my $x = $px + ($sample % $FINE + 0.5) / $FINE;
                my $y = $py + (int($sample / $FINE) + 0.5) / $FINE;
                my $colour = \@ground;
                for my $layer (@layers) {
                    my ($test, $paint, @rest) = @$layer;
                    if ($test->($x, $y, @rest)) { $colour = $paint; last }
                }
                $sum[$_] += $colour->[$_] for 0 .. 2;
            }
            push @{$rows[$py]}, [map { int($_ / $FINE**2 + 0.5) } @sum];
        }
    }
    return @rows;
}

sub png {
    my @rows = @_;
    my $chunk = sub { my ($type, $data) = @_;
                      pack('N', length $data) . $type . $data . pack('N', crc32($type . $data)) };
    my $raw = join '', map { "\0" . join('', map { pack 'C3', @$_ } @$_) } @rows;
    return "\x89PNG\r\n\x1a\n" . $chunk->('IHDR', pack('NNC5', $SIZE, $SIZE, 8, 2, 0, 0, 0))
        . $chunk->('IDAT', compress($raw, 9)) . $chunk->('IEND', '');
}

# 7 x 7 x 5 shades stand for all colours; the code table starts anew when its 4096 codes are used.
sub gif {
    my @pixels = map { my ($r, $g, $b) = @$_;
                       (int($r / 42.5 + 0.5) * 7 + int($g / 42.5 + 0.5)) * 5 + int($b / 63.75 + 0.5) }
        map { @$_ } @_;
    my $palette = join '', map { my $i = $_;
                                 pack 'C3', int($i / 35) * 42.5, int($i / 5) % 7 * 42.5, $i % 5 * 63.75 }
        0 .. 244;
    $palette .= "\0" x (768 - length $palette);
    my ($bits, $width, %table, $next) = ('', 9);
    my $put = sub { $bits .= reverse sprintf "%0${width}b", $_[0] };
    my $clear = sub { $put->(256); %table = map { $_ => $_ } 0 .. 255; $next = 258; $width = 9 };
    $clear->();
    my $word = shift @pixels;
    for my $pixel (@pixels) {
        if (exists $table{"$word,$pixel"}) { $word .= ",$pixel"; next }
        $put->($table{$word});
        $table{"$word,$pixel"} = $next++;
        $width++ if $next > 1 << $width && $width < 12;
        $clear->() if $next == 4095;
        $word = $pixel;
    }
    $put->($table{$word});
    $put->(257);
    my $data = pack 'b*', $bits;
    my $blocks = join '', map { pack('C', length) . $_ } unpack '(a255)*', $data;
    return 'GIF89a' . pack('vvCCC', $SIZE, $SIZE, 0xf7, 0, 0) . $palette
        . ',' . pack('vvvvC', 0, 0, $SIZE, $SIZE, 0) . "\x08$blocks\0;";
}

# Baseline JPEG, no subsampling. All codes of a table have one length, which costs some bytes and
# saves the usual tables.
sub jpeg {
    my @rows = @_;
    my $step = 10;    # of the quantisation, for all frequencies
    my @ac = (0x00, 0xf0, map { my $run = $_; map { $run << 4 | $_ } 1 .. 10 } 0 .. 15);
    my %ac; @ac{@ac} = 0 .. $#ac;
    my @zigzag = map { $_->[0] * 8 + $_->[1] }
        sort { my ($s, $t) = ($a->[0] + $a->[1], $b->[0] + $b->[1]);
               $s <=> $t || ($s % 2 ? $a->[0] <=> $b->[0] : $b->[0] <=> $a->[0]) }
        map { my $v = $_; map { [$v, $_] } 0 .. 7 } 0 .. 7;
    my @wave = map { my $u = $_;
                     [map { cos((2 * $_ + 1) * $u * 3.14159265358979 / 16) * ($u ? 0.5 : sqrt(1 / 8)) } 0 .. 7] }
        0 .. 7;
    my $value = sub { my ($v) = @_;    # size of the value, and its bits
                      my $size = $v ? length sprintf('%b', abs $v) : 0;
                      ($size, $size ? sprintf("%0${size}b", $v > 0 ? $v : $v + (1 << $size) - 1) : '') };
    my ($bits, @last) = ('', 0, 0, 0);
    for my $by (0 .. $SIZE / 8 - 1) { for my $bx (0 .. $SIZE / 8 - 1) { for my $part (0 .. 2) {
        my @block = map { my $y = $by * 8 + $_; [map {
            my ($r, $g, $b) = @{$rows[$y][$bx * 8 + $_]};
            $part == 0 ? 0.299 * $r + 0.587 * $g + 0.114 * $b - 128
                : $part == 1 ? -0.1687 * $r - 0.3313 * $g + 0.5 * $b
                : 0.5 * $r - 0.4187 * $g - 0.0813 * $b } 0 .. 7] } 0 .. 7;
        my @lines = map { my $row = $_; [map { my $u = $_; my $s = 0;
            $s += $row->[$_] * $wave[$u][$_] for 0 .. 7; $s } 0 .. 7] } @block;
        my @levels = map { my ($v, $u) = (int($_ / 8), $_ % 8); my $s = 0;
            $s += $lines[$_][$u] * $wave[$v][$_] for 0 .. 7; sprintf '%.0f', $s / $step } @zigzag;
        my ($size, $tail) = $value->($levels[0] - $last[$part]);
        $last[$part] = $levels[0];
        $bits .= sprintf('%04b', $size) . $tail;
        my $zeros = 0;
        for my $level (@levels[1 .. 63]) {
            if ($level == 0) { $zeros++; next }
            for (; $zeros > 15; $zeros -= 16) { $bits .= sprintf '%08b', $ac{0xf0} }
            ($size, $tail) = $value->($level);
            $bits .= sprintf('%08b', $ac{$zeros << 4 | $size}) . $tail;
            $zeros = 0;
        }
        $bits .= sprintf '%08b', $ac{0x00} if $zeros;
    } } }
    my $data = pack 'B*', $bits . '1' x (-length($bits) % 8);
    $data =~ s/\xff/\xff\0/g;
    my $part = sub { my ($mark, $body) = @_; pack('CCn', 0xff, $mark, 2 + length $body) . $body };
    return "\xff\xd8" . $part->(0xe0, "JFIF\0" . pack 'CCCnnCC', 1, 1, 0, 1, 1, 0, 0)
        . $part->(0xdb, pack 'C*', 0, ($step) x 64)
        . $part->(0xc0, pack 'CnnC*', 8, $SIZE, $SIZE, 3, map { ($_, 0x11, 0) } 1 .. 3)
        . $part->(0xc4, pack 'C*', 0x00, 0, 0, 0, 12, (0) x 12, 0 .. 11)
        . $part->(0xc4, pack 'C*', 0x10, (0) x 7, scalar @ac, (0) x 8, @ac)
        . $part->(0xda, pack 'C*', 3, (map { ($_, 0) } 1 .. 3), 0, 63, 0) . "$data\xff\xd9";
}

my %encode = (png => \&png, gif => \&gif, jpeg => \&jpeg);
print "-- Written by tools/demo-pictures.sh; change the drawings there.\n";
for (@pictures) {
    my ($sku, $format, $background, @shapes) = @$_;
    my $bytes = $encode{$format}->(draw($background, @shapes));
    print "UPDATE products SET picture = x'", uc unpack('H*', $bytes), "'\nWHERE sku = '$sku';\n";
}
PERL

mv "$target.new" "$target"
echo "$target: $(grep -c '^UPDATE' "$target") pictures, $(wc -c < "$target") bytes"
